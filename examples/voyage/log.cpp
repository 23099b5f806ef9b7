#include "log.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

namespace voyage {

namespace {

std::string closed(std::string text, checksum_t checksum) {
    if (checksum == checksum_t::none) {
        return text;
    }
    number_t sum = 0;
    for (std::size_t i = text[0] == '$' || text[0] == '!' ? 1 : 0; i < text.size(); ++i) {
        sum ^= static_cast<unsigned char>(text[i]);
    }
    return text + '*' +
           (checksum == checksum_t::lowerCase ? hexadecimal(sum, 2, "0123456789abcdef")
                                              : hexadecimal(sum, 2));
}

// What a fault can do to a line, which still ends in CR LF.

bool any(const std::string& /*line*/) { return true; }
bool hasStart(const std::string& line) { return line[0] == '$'; }
bool hasChecksum(const std::string& line) {
    return line.size() > 5 && line[line.size() - 5] == '*';
}
bool continuesGroup(const std::string& line) { // "$GPGSV,3,2": not the first of its group
    return line.size() > 9 && line.compare(3, 4, "GSV,") == 0 && line[9] > '1';
}

void stampLines(trouble_t& trouble, const char* end) {
    trouble.stampEnd = end;
    trouble.stampLines = 6 + trouble.random.below(6);
}

using text_t = std::string;

struct fault_t {
    bool (*fits)(const text_t& line);
    void (*apply)(text_t& line, trouble_t& trouble);
};
constexpr fault_t faults[] = {
    {any, // noise before the line
     [](text_t& line, trouble_t& trouble) {
         text_t noise("\xff\0\\\"\x1b\xc3\xa9\xc3(~\x80'", 12);
         std::rotate(noise.begin(), noise.begin() + trouble.random.below(12), noise.end());
         line.insert(0, noise);
     }},
    {any, // cut in the middle, the next line follows at once
     [](text_t& line, trouble_t& trouble) {
         const auto quarter = static_cast<number_t>(line.size() / 4);
         line.resize(static_cast<std::size_t>(quarter + trouble.random.below(2 * quarter)));
     }},
    // two whole sentences without a line end between them
    {hasChecksum, [](text_t& line, trouble_t&) { line.resize(line.size() - 2); }},
    {hasChecksum, // a wrong one
     [](text_t& line, trouble_t&) {
         char& digit = line[line.size() - 3];
         digit = digit == '0' ? '1' : '0';
     }},
    {hasChecksum, [](text_t& line, trouble_t&) { line[line.size() - 4] = 'G'; }},
    {any, [](text_t& line, trouble_t&) { line.erase(line.size() - 2, 1); }}, // LF alone
    {any, [](text_t&, trouble_t& trouble) { stampLines(trouble, "Z "); }},
    {any, [](text_t& line, trouble_t&) { line.pop_back(); }}, // CR alone
    {any, [](text_t& line, trouble_t&) { line.insert(line.size() - 2, 1, '\r'); }},
    {hasStart, [](text_t& line, trouble_t&) { line.insert(0, 1, '$'); }},
    {any, [](text_t&, trouble_t& trouble) { stampLines(trouble, "Z,"); }},
    {hasChecksum, [](text_t& line, trouble_t&) { line.insert(line.size() - 2, " rx1"); }},
    {any, [](text_t& line, trouble_t&) { line.insert(0, "# log rotated\r\n"); }},
    {any, [](text_t& line, trouble_t&) { line.insert(0, "\r\n \t\r\n"); }},
    {any, [](text_t&, trouble_t& trouble) { stampLines(trouble, "+00:00 "); }},
    {continuesGroup, [](text_t& line, trouble_t&) { line.clear(); }},
};

// Two digits of hours, minutes and so on
std::string two(number_t value) { return number(value, 0, 2).text; }

} // namespace

field_t::field_t(std::string words, number_t amount, double accuracy)
    : text(std::move(words)), isNumber(true), number(static_cast<double>(amount)),
      resolution(accuracy) {}

field_t field_t::as(const char* key, double unit, number_t place) const {
    if (!isNumber) {
        return as(key, text);
    }
    field_t field = *this;
    field.values.push_back({key, "", number * unit, resolution * std::abs(unit), place});
    return field;
}

field_t field_t::as(const char* key, const std::string& words) const {
    field_t field = *this;
    field.values.push_back({key, words});
    return field;
}

field_t number(number_t value, int decimals, int digits) {
    std::string text;
    int length = 0;
    for (number_t rest = value < 0 ? -value : value; rest != 0 || length < decimals + digits;
         rest /= 10) {
        if (length == decimals && decimals != 0) {
            text += '.';
        }
        ++length;
        text += static_cast<char>('0' + rest % 10);
    }
    if (value < 0) {
        text += '-';
    }
    std::reverse(text.begin(), text.end());
    const double unit = std::pow(10, decimals);
    field_t field(text, value, decimals == 0 ? 0 : 0.5 / unit);
    field.number /= unit;
    return field;
}

std::string hexadecimal(number_t value, std::size_t digits, const char* alphabet) {
    std::string text;
    for (; text.size() < digits; value /= 16) {
        text.insert(text.begin(), alphabet[value % 16]);
    }
    return text;
}

std::string clockText(number_t clock) {
    const number_t second = clock % secondsOfDay;
    return two(second / 3600) + ':' + two(second / 60 % 60) + ':' + two(second % 60);
}

std::string dateText(number_t clock) {
    const day_t date = dayOf(clock / secondsOfDay);
    return number(date.year, 0, 4).text + '-' + two(date.month) + '-' + two(date.day);
}

field_t instant(const std::string& text, number_t clock, const std::string& fraction) {
    const std::string timeOfDay = clockText(clock) + '.' + fraction;
    return field_t(text.c_str())
        .as("timeOfDay", timeOfDay)
        .as("time", dateText(clock) + 'T' + timeOfDay + 'Z');
}

field_t time(number_t clock, number_t hundredths) {
    const number_t second = clock % secondsOfDay;
    const number_t digits = second / 3600 * 10000 + second / 60 % 60 * 100 + second % 60;
    return instant(number(digits * 100 + hundredths, 2, 6).text, clock, two(hundredths));
}

field_t minutes(number_t value, int degreeDigits) {
    const number_t size = value < 0 ? -value : value;
    const number_t shown = size / degree * 10000000 + size % degree / 10; // 1e-5 minutes
    return {number(shown, 5, degreeDigits + 2).text, value, 10};
}

record_t::record_t(const char* address, std::initializer_list<field_t> fields)
    : m_text(address), m_separator(",") {
    // The name of a proprietary sentence is whole, that of any other its last three letters.
    const std::size_t talkerEnd = address[1] == 'P' ? 1 : m_text.size() - 3;
    m_type = m_text.substr(talkerEnd);
    m_talker = m_text.substr(1, talkerEnd - 1);
    add(fields);
}

record_t::record_t(const char* type, const char* start, const char* separator,
                   std::initializer_list<field_t> fields)
    : m_type(type), m_text(start), m_separator(separator) {
    add(fields);
}

void record_t::add(std::initializer_list<field_t> fields) {
    for (const field_t& field : fields) {
        m_text += m_separator + field.text;
        for (const value_t& value : field.values) {
            add(value);
        }
    }
}

void record_t::add(const value_t& value) {
    if (std::none_of(m_values.begin(), m_values.end(), [&value](const value_t& other) {
            return std::strcmp(other.key, value.key) == 0 && other.place == value.place;
        })) {
        m_values.push_back(value);
    }
}

// None of the texts has anything that JSON escapes.
std::string record_t::values() const {
    if (m_values.empty()) {
        return "";
    }
    std::string json = "\"type\":\"" + m_type + '"';
    if (!m_talker.empty()) {
        json += ",\"talker\":\"" + m_talker + '"';
    }
    for (const value_t& value : m_values) {
        json += std::string(",\"") + value.key;
        json += value.place < 0 ? "\":" : '.' + std::to_string(value.place) + "\":";
        char text[64];
        (void)std::snprintf(text, sizeof text, value.resolution == 0 ? "%.12g" : "[%.12g,%.6g]",
                            value.number, value.resolution);
        json += value.words.empty() ? text : '"' + value.words + '"';
    }
    return json;
}

log_t::log_t(std::uint64_t seed, bool faulty, bool keepsValues)
    : m_keepsValues(keepsValues), m_faulty(faulty), m_trouble{random_t(~seed)} {}

void log_t::beginEpoch(number_t clock) {
    m_clock = clock;
    m_lineOfEpoch = 0;
    if (!m_held.first.empty() && clock % secondsOfDay == 2) {
        append(m_held.first, m_held.second);
        m_held = {};
    }
}

void log_t::record(const record_t& record, checksum_t checksum) {
    std::string values = m_keepsValues ? record.values() : "";
    if (checksum == checksum_t::none && record.text()[0] == '$' && !values.empty()) {
        values += ",\"checksum\":false";
    }
    line(closed(record.text(), checksum), values);
}

void log_t::line(std::string text, const std::string& values) {
    text += "\r\n";
    ++m_lineOfEpoch;
    const bool damaged = m_faulty && damage(text);
    append(text, damaged ? "" : values);
}

void log_t::hold(const record_t& record) {
    m_held = {closed(record.text(), checksum_t::upperCase) + "\r\n",
              m_keepsValues ? record.values() : ""};
}

// A record behind a line without its end is damaged too.
void log_t::append(const std::string& text, const std::string& values) {
    if (m_keepsValues && m_lineEnded && !values.empty()) {
        m_values += "{\"offset\":" + std::to_string(bytes()) + ',' + values + "}\n";
    }
    m_buffer += text;
    m_lineEnded = text.empty() ? m_lineEnded : text.back() == '\r' || text.back() == '\n';
}

bool log_t::flush(std::FILE* file, std::FILE* valueFile) {
    const auto write = [](const std::string& text, std::FILE* to) {
        return to == nullptr || std::fwrite(text.data(), 1, text.size(), to) == text.size();
    };
    const bool whole = write(m_buffer, file);
    const bool valuesWhole = write(m_values, valueFile);
    m_written += m_buffer.size();
    m_buffer.clear();
    m_values.clear();
    return whole && valuesWhole;
}

void log_t::cutLastEnd() { m_buffer.resize(m_buffer.find_last_not_of("\r\n") + 1); }

// First each fault has its turn, close to one another so that a short log shows them all; after
// that they are rare. Returns whether the line is another now.
bool log_t::damage(std::string& text) {
    if (m_trouble.stampLines == 0) {
        if (m_quietLines != 0) {
            --m_quietLines;
            return false;
        }
        const bool forced = m_forced != std::size(faults);
        if (!forced && m_trouble.random.below(150) != 0) {
            return false;
        }
        const fault_t& fault =
            faults[forced ? m_forced
                          : static_cast<std::size_t>(m_trouble.random.below(std::size(faults)))];
        if (!fault.fits(text)) {
            return false;
        }
        fault.apply(text, m_trouble);
        m_forced += forced ? 1 : 0;
        m_quietLines = forced ? 12 + m_trouble.random.below(12) : 4;
    }
    if (m_trouble.stampLines != 0) {
        --m_trouble.stampLines;
        text.insert(0, stamp());
    }
    return true;
}

std::string log_t::stamp() {
    const number_t micros = 60000 + m_lineOfEpoch * 18000 + m_trouble.random.below(18000);
    return dateText(m_clock) + 'T' + clockText(m_clock) + '.' + number(micros, 0, 6).text +
           m_trouble.stampEnd;
}

} // namespace voyage
