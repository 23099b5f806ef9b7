#include "tools/jsonRecord.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>

#include <fmt/compile.h>

namespace {

constexpr double degreesPerRadian = 180 / 3.141592653589793;

void append(fmt::memory_buffer& out, std::string_view text) {
    out.append(text.data(), text.data() + text.size());
}

bool isContinuation(unsigned char c) { return (c & 0xC0) == 0x80; }

// The length of the UTF-8 sequence of several bytes at the start of `text`; 0 when it is not valid.
std::size_t utf8Length(std::string_view text) {
    const auto at = [&](std::size_t i) {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
    };
    const unsigned first = at(0);
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(static_cast<unsigned char>(at(i)))) {
            return 0;
        }
    }
    // Overlong forms, surrogates, and what lies beyond the last code point.
    const unsigned second = at(1);
    if ((first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
        (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F)) {
        return 0;
    }
    return length;
}

bool isPlain(unsigned char c) { return c >= 0x20 && c < 0x80 && c != '"' && c != '\\'; }

void writeControl(fmt::memory_buffer& out, unsigned char c) {
    switch (c) {
    case '\t': return append(out, "\\t");
    case '\n': return append(out, "\\n");
    case '\r': return append(out, "\\r");
    default: fmt::format_to(fmt::appender(out), FMT_COMPILE("\\u{:04x}"), c);
    }
}

// Writes the members of one object.
class members_t {
public:
    explicit members_t(fmt::memory_buffer& out) : m_out(out) {}

    fmt::memory_buffer& key(std::string_view name) {
        m_out.push_back(m_separator);
        m_out.push_back('"');
        append(m_out, name);
        append(m_out, "\":");
        m_separator = ',';
        return m_out;
    }

    void text(std::string_view name, std::string_view bytes) { writeJsonString(key(name), bytes); }

    template <typename Number>
    void number(std::string_view name, Number value) {
        fmt::format_to(fmt::appender(key(name)), FMT_COMPILE("{}"), value);
    }

    void close() {
        if (m_separator == '{') {
            m_out.push_back('{');
        }
        m_out.push_back('}');
    }

private:
    fmt::memory_buffer& m_out;
    char m_separator = '{';
};

// The seconds with the digits that were sent; any other notation of a number in its shortest form.
void writeSeconds(fmt::memory_buffer& out, const sentTime_t& sent) {
    const std::string_view text = sent.seconds;
    const std::size_t whole = std::min(text.find('.'), text.size());
    const std::string_view fraction = text.substr(std::min(whole + 1, text.size()));
    const auto digits = [](std::string_view part) {
        return part.find_first_not_of("0123456789") == std::string_view::npos;
    };
    if (whole > 0 && digits(text.substr(0, whole)) && digits(fraction)) {
        append(out, whole < 2 ? "0" : "");
        append(out, fraction.empty() ? text.substr(0, whole) : text);
        return;
    }
    append(out, sent.time.second >= 0 && sent.time.second < 10 ? "0" : "");
    fmt::format_to(fmt::appender(out), FMT_COMPILE("{}"), sent.time.second);
}

void writeTime(fmt::memory_buffer& out, const sentTime_t& sent) {
    fmt::format_to(fmt::appender(out), FMT_COMPILE("{:02}:{:02}:"), sent.time.hour,
                   sent.time.minute);
    writeSeconds(out, sent);
}

void writeDate(fmt::memory_buffer& out, const kalo::date_t& date) {
    fmt::format_to(fmt::appender(out), FMT_COMPILE("{:04}-{:02}-{:02}"), date.year, date.month,
                   date.day);
}

// Writes one value under its name. The calls return whether something that was sent is lost by it.
class valueWriter_t {
public:
    valueWriter_t(members_t& members, const valueRow_t& row, const source_t& source, bool radians)
        : m_members(members), m_row(row), m_source(source), m_radians(radians) {}

    bool operator()(undecoded_t /*none*/) const { return isSent(m_source, m_row.fields); }

    bool operator()(absent_t /*none*/) const { return false; }

    bool operator()(bool value) const {
        append(m_members.key(m_row.name), value ? "true" : "false");
        return false;
    }

    bool operator()(unsigned value) const { return number(value); }

    bool operator()(int value) const { return number(value); }

    bool operator()(float value) const {
        return std::isfinite(value) ? number(value) : isSent(m_source, m_row.fields);
    }

    bool operator()(double value) const {
        if (!std::isfinite(value)) {
            return isSent(m_source, m_row.fields);
        }
        if (m_row.unit.radianName != nullptr) {
            writeAngle(m_members.key(m_row.name), value);
            return false;
        }
        return number(value);
    }

    bool operator()(char value) const {
        m_members.text(m_row.name, {&value, 1});
        return false;
    }

    bool operator()(const std::string& value) const {
        if (!value.empty()) {
            m_members.text(m_row.name, value);
        }
        return false;
    }

    bool operator()(const sentTime_t& value) const {
        fmt::memory_buffer& out = m_members.key(m_row.name);
        out.push_back('"');
        writeTime(out, value);
        out.push_back('"');
        return false;
    }

    bool operator()(const kalo::date_t& value) const {
        fmt::memory_buffer& out = m_members.key(m_row.name);
        out.push_back('"');
        writeDate(out, value);
        out.push_back('"');
        return false;
    }

    bool operator()(const std::vector<unsigned>& values) const {
        fmt::format_to(fmt::appender(m_members.key(m_row.name)), "[{}]", fmt::join(values, ","));
        return false;
    }

    bool operator()(const std::vector<satellite_t>& satellites) const {
        fmt::memory_buffer& out = m_members.key(m_row.name);
        out.push_back('[');
        bool lost = false;
        for (const satellite_t& satellite : satellites) {
            append(out, &satellite == satellites.data() ? "" : ",");
            writeSatellite(out, satellite);
            lost = lost || satellite.lost;
        }
        out.push_back(']');
        return lost;
    }

private:
    template <typename Number>
    bool number(Number value) const {
        m_members.number(m_row.name, value);
        return false;
    }

    void writeAngle(fmt::memory_buffer& out, double radians) const {
        if (m_radians) {
            fmt::format_to(fmt::appender(out), FMT_COMPILE("{}"), radians);
        } else {
            // What "{:.15g}" would write, at a fraction of its price.
            char text[32];
            const std::to_chars_result end =
                std::to_chars(std::begin(text), std::end(text), radians * degreesPerRadian,
                              std::chars_format::general, std::numeric_limits<double>::digits10);
            out.append(std::begin(text), end.ptr);
        }
    }

    void writeSatellite(fmt::memory_buffer& out, const satellite_t& satellite) const {
        members_t members(out);
        if (satellite.hasPrn) {
            members.number("prn", satellite.prn);
        }
        if (satellite.hasElevation) {
            writeAngle(members.key("elevation"), satellite.elevation);
        }
        if (satellite.hasAzimuth) {
            writeAngle(members.key("azimuth"), satellite.azimuth);
        }
        if (satellite.hasSnr) {
            members.number("snr", satellite.snr);
        }
        members.close();
    }

    members_t& m_members;
    const valueRow_t& m_row;
    const source_t& m_source;
    bool m_radians;
};

// Returns whether something that was sent did not decode.
bool writeValues(members_t& members, const recordType_t& type, const source_t& source,
                 bool radians) {
    bool lost = false;
    for (const valueRow_t& row : type) {
        lost = std::visit(valueWriter_t(members, row, source, radians), row.read(source)) || lost;
    }
    return lost;
}

std::string_view fieldText(const kalo::nmeaFormat_t& sentence, unsigned index) {
    return sentence.field(index)->toString();
}

void writeInstant(fmt::memory_buffer& out, const instant_t& instant, bool epoch) {
    if (epoch) {
        fmt::format_to(fmt::appender(out), FMT_COMPILE("{}"), instant.timestamp);
        return;
    }
    out.push_back('"');
    writeDate(out, instant.date);
    out.push_back('T');
    writeTime(out, instant.time);
    append(out, "Z\"");
}

void writeFields(members_t& members, const kalo::nmeaFormat_t& sentence) {
    members.text("address", fieldText(sentence, 0));
    fmt::memory_buffer& out = members.key("fields");
    out.push_back('[');
    for (unsigned i = 1; i < sentence.fieldCount(); ++i) {
        append(out, i > 1 ? "," : "");
        writeJsonString(out, fieldText(sentence, i));
    }
    out.push_back(']');
}

} // namespace

void writeJsonString(fmt::memory_buffer& out, std::string_view bytes) {
    out.push_back('"');
    std::size_t done = 0;
    for (std::size_t i = 0; i < bytes.size();) {
        const auto c = static_cast<unsigned char>(bytes[i]);
        const std::size_t length = isPlain(c) ? 1 : utf8Length(bytes.substr(i));
        if (length > 0) {
            i += length;
            continue;
        }
        append(out, bytes.substr(done, i - done));
        done = ++i;
        if (c == '"') {
            append(out, "\\\"");
        } else if (c == '\\') {
            append(out, "\\\\\\\\");
        } else if (c < 0x20) {
            writeControl(out, c);
        } else {
            fmt::format_to(fmt::appender(out), FMT_COMPILE("\\\\x{:02X}"), c);
        }
    }
    append(out, bytes.substr(done));
    out.push_back('"');
}

void writeJson(fmt::memory_buffer& out, const jsonRecord_t& json, const jsonOptions_t& options) {
    const record_t& record = *json.record;
    members_t members(out);
    members.text("source", json.input);
    members.number("line", record.line);
    const bool isOwn = !record.raw.empty(); // it has bytes of its own
    if (isOwn) {
        members.number("offset", record.offset);
    }
    if (!record.received.empty()) {
        members.text("received", record.received);
    }
    if (!record.prefix.empty()) {
        members.text("prefix", record.prefix);
    }
    if (json.type != nullptr) {
        members.text("type", json.type->name);
    } else {
        append(members.key("type"), "null");
    }
    if (!json.talker.empty()) {
        members.text("talker", json.talker);
    }
    if (json.instant != nullptr) {
        writeInstant(members.key("time"), *json.instant, options.epoch);
    }
    bool raw = options.raw || record.fault != fault_t::none;
    if (json.values != nullptr) {
        raw = writeValues(members, *json.type, *json.values, options.radians) || raw;
    }
    if (record.sentence != nullptr) {
        if (!record.hasChecksum) {
            append(members.key("checksum"), "false");
        }
        if (json.values == nullptr) {
            writeFields(members, *record.sentence);
        }
    }
    if (record.fault != fault_t::none) {
        members.text("error", faultText(record.fault));
    }
    if (record.fault == fault_t::checksumMismatch) {
        fmt::format_to(fmt::appender(members.key("stated")), FMT_COMPILE("\"{:02X}\""),
                       record.stated);
        fmt::format_to(fmt::appender(members.key("computed")), FMT_COMPILE("\"{:02X}\""),
                       record.computed);
    }
    if (raw && isOwn) {
        members.text("raw", record.raw);
    }
    members.close();
    out.push_back('\n');
}
