#include "log.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace voyage {

namespace {

std::string closed(const sentence_t& sentence, checksum_t checksum) {
    std::string text = sentence.body();
    if (checksum == checksum_t::none) {
        return text;
    }
    unsigned sum = 0;
    for (std::size_t i = 1; i < text.size(); ++i) {
        sum ^= static_cast<unsigned char>(text[i]);
    }
    const char* digits =
        checksum == checksum_t::lowerCase ? "0123456789abcdef" : "0123456789ABCDEF";
    text += '*';
    text += digits[sum / 16];
    text += digits[sum % 16];
    return text;
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

// Appends a number that counts units of 10^-decimals.
void appendNumber(std::string& to, number_t value, int decimals, int digits) {
    char reversed[24];
    int length = 0;
    for (number_t rest = value < 0 ? -value : value; rest != 0 || length < decimals + digits;
         rest /= 10) {
        reversed[length++] = static_cast<char>('0' + rest % 10);
    }
    if (value < 0) {
        to += '-';
    }
    while (length != 0) {
        if (length == decimals) {
            to += '.';
        }
        to += reversed[--length];
    }
}

} // namespace

field_t time(number_t clock, number_t hundredths) {
    const number_t second = clock % secondsOfDay;
    const number_t digits = second / 3600 * 10000 + second / 60 % 60 * 100 + second % 60;
    return number(digits * 100 + hundredths, 2, 6);
}

field_t minutes(number_t value, int degreeDigits) {
    const number_t shown = (value < 0 ? -value : value) / 10; // 1e-5 minutes
    constexpr number_t degree = 6000000;
    return number(shown / degree * 10000000 + shown % degree, 5, degreeDigits + 2);
}

void sentence_t::add(std::initializer_list<field_t> fields) {
    for (const field_t& field : fields) {
        m_body += ',';
        if (field.text != nullptr) {
            m_body += field.text;
        } else {
            appendNumber(m_body, field.value, field.decimals, field.digits);
        }
    }
}

log_t::log_t(std::uint64_t seed, bool faulty) : m_faulty(faulty), m_trouble{random_t(~seed)} {}

void log_t::beginEpoch(number_t clock) {
    m_clock = clock;
    m_lineOfEpoch = 0;
    if (!m_held.empty() && clock % secondsOfDay == 2) {
        m_buffer += std::exchange(m_held, {});
    }
}

void log_t::sentence(const sentence_t& sentence, checksum_t checksum) {
    line(closed(sentence, checksum));
}

void log_t::line(std::string text) {
    text += "\r\n";
    ++m_lineOfEpoch;
    if (m_faulty) {
        damage(text);
    }
    m_buffer += text;
}

void log_t::hold(const sentence_t& sentence) {
    m_held = closed(sentence, checksum_t::upperCase) + "\r\n";
}

bool log_t::flush(std::FILE* file) {
    const bool whole = std::fwrite(m_buffer.data(), 1, m_buffer.size(), file) == m_buffer.size();
    m_written += m_buffer.size();
    m_buffer.clear();
    return whole;
}

void log_t::cutLastEnd() { m_buffer.resize(m_buffer.find_last_not_of("\r\n") + 1); }

// First each fault has its turn, close to one another so that a short log shows them all; after
// that they are rare.
void log_t::damage(std::string& text) {
    if (m_trouble.stampLines == 0) {
        if (m_quietLines != 0) {
            --m_quietLines;
            return;
        }
        const bool forced = m_forced != std::size(faults);
        if (!forced && m_trouble.random.below(150) != 0) {
            return;
        }
        const fault_t& fault =
            faults[forced ? m_forced
                          : static_cast<std::size_t>(m_trouble.random.below(std::size(faults)))];
        if (!fault.fits(text)) {
            return;
        }
        fault.apply(text, m_trouble);
        m_forced += forced ? 1 : 0;
        m_quietLines = forced ? 12 + m_trouble.random.below(12) : 4;
    }
    if (m_trouble.stampLines != 0) {
        --m_trouble.stampLines;
        text.insert(0, stamp());
    }
}

std::string log_t::stamp() {
    const day_t date = dayOf(m_clock / secondsOfDay);
    const number_t second = m_clock % secondsOfDay;
    const number_t micros = 60000 + m_lineOfEpoch * 18000 + m_trouble.random.below(18000);
    std::string text;
    appendNumber(text, date.year, 0, 4);
    appendNumber(text += '-', date.month, 0, 2);
    appendNumber(text += '-', date.day, 0, 2);
    appendNumber(text += 'T', second / 3600, 0, 2);
    appendNumber(text += ':', second / 60 % 60, 0, 2);
    appendNumber(text += ':', second % 60 * 1000000 + micros, 6, 2);
    return text += m_trouble.stampEnd;
}

} // namespace voyage
