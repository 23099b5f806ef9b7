#include "tools/output/jsonWriter.h"

#include <cstring>

#include "tools/output/jsonString.h"
#include "tools/output/numberText.h"
#include "tools/record/degrees.h"
#include "tools/record/dictionaryRows.h"
#include "tools/record/registry.h"

namespace {

// Text of a size that is known when the program is compiled, so that it is copied without a loop.
template <std::size_t size>
struct fixedText_t {
    char text[size + 1] = {};

    constexpr char* copyTo(char* at) const {
        std::memcpy(at, text, size);
        return at + size;
    }
};

// ",\"NAME\":"
template <typename Column>
constexpr auto keyOf() {
    constexpr std::string_view name = Column::row.name;
    fixedText_t<name.size() + 4> key;
    char* at = key.text;
    *at++ = ',';
    *at++ = '"';
    for (const char c : name) {
        *at++ = c;
    }
    *at++ = '"';
    *at++ = ':';
    return key;
}

template <std::size_t size>
char* copy(char* at, const char (&text)[size]) {
    std::memcpy(at, text, size - 1);
    return at + size - 1;
}

// What a value may take that is neither text nor a list: a date, say, or a time without its
// fraction, or a number.
constexpr std::size_t longestPlain = 64;

char* put(char* at, bool value) { return value ? copy(at, "true") : copy(at, "false"); }
char* put(char* at, std::uint64_t value) { return writeInteger(at, value); }
char* put(char* at, unsigned value) { return writeInteger(at, std::uint64_t{value}); }
char* put(char* at, unsigned short value) { return writeInteger(at, std::uint64_t{value}); }
char* put(char* at, int value) { return writeInteger(at, value); }
char* put(char* at, std::int64_t value) {
    *at = '-';
    return writeInteger(at + (value < 0 ? 1 : 0),
                        value < 0 ? std::uint64_t{0} - static_cast<std::uint64_t>(value)
                                  : static_cast<std::uint64_t>(value));
}
char* put(char* at, float value) { return writeShortest(at, value); }
char* put(char* at, double value) { return writeShortest(at, value); }

char* put(char* at, const kalo::date_t& date) {
    at = writeYear(at, date.year);
    *at++ = '-';
    at = writePair(at, date.month);
    *at++ = '-';
    return writePair(at, date.day);
}

char* putWholeTime(char* at, const sentTime_t& sent) {
    at = writePair(at, sent.time.hour);
    *at++ = ':';
    at = writePair(at, sent.time.minute);
    *at++ = ':';
    return writePair(at, sent.second);
}

char* putAngle(char* at, double radians, bool asRadians) {
    return asRadians ? writeShortest(at, radians)
                     : writeFifteenDigits(at, radians * degreesPerRadian);
}

char* put(char* at, const satellite_t& satellite, bool asRadians) {
    char* const begin = at;
    if (satellite.hasPrn) {
        at = put(copy(at, ",\"prn\":"), satellite.prn);
    }
    if (satellite.hasElevation) {
        at = putAngle(copy(at, ",\"elevation\":"), satellite.elevation, asRadians);
    }
    if (satellite.hasAzimuth) {
        at = putAngle(copy(at, ",\"azimuth\":"), satellite.azimuth, asRadians);
    }
    if (satellite.hasSnr) {
        at = put(copy(at, ",\"snr\":"), satellite.snr);
    }
    if (at == begin) {
        *at++ = '{';
    }
    *begin = '{';
    *at++ = '}';
    return at;
}

void writeTime(buffer_t& out, const sentTime_t& sent) {
    char* at = putWholeTime(out.room(longestPlain + 1 + sent.fraction.size()), sent);
    if (!sent.fraction.empty()) {
        *at++ = '.';
        std::memcpy(at, sent.fraction.data(), sent.fraction.size());
        at += sent.fraction.size();
    }
    out.setEnd(at);
}

// Takes the values of a record and writes those that are there.
class valueSink_t {
public:
    valueSink_t(buffer_t& out, bool radians) : m_out(out), m_radians(radians) {}

    template <typename Column, typename T>
    void value(Column /*column*/, const T& value) {
        static constexpr auto key = keyOf<Column>();
        char* const at = key.copyTo(m_out.room(sizeof key + longestPlain));
        if constexpr (Column::row.unit.radianName != nullptr) {
            m_out.setEnd(putAngle(at, value, m_radians));
        } else if constexpr (std::is_same_v<T, kalo::date_t>) {
            *at = '"';
            char* const end = put(at + 1, value);
            *end = '"';
            m_out.setEnd(end + 1);
        } else if constexpr (std::is_arithmetic_v<T> && !std::is_same_v<T, char>) {
            m_out.setEnd(put(at, value));
        } else {
            m_out.setEnd(at);
            write(value);
        }
    }

    template <typename Column>
    void none(Column /*column*/) {}

    template <typename T>
    void value(dictionaryColumn_t column, const T& value) {
        m_out.append(column.row.key);
        if constexpr (std::is_same_v<T, kalo::date_t>) {
            char* const at = m_out.room(longestPlain);
            *at = '"';
            char* const end = put(at + 1, value);
            *end = '"';
            m_out.setEnd(end + 1);
        } else if constexpr (std::is_same_v<T, double>) {
            char* const at = m_out.room(longestPlain);
            m_out.setEnd(column.row.isAngle() ? putAngle(at, value, m_radians) : put(at, value));
        } else if constexpr (std::is_same_v<T, std::int64_t>) {
            m_out.setEnd(put(m_out.room(longestPlain), value));
        } else {
            write(value);
        }
    }

    bool value(dictionaryColumn_t column, const memberGroup_t& group) {
        bool lost = false;
        m_out.append(column.row.key);
        for (unsigned i = 0; i < group.count(); ++i) {
            m_out.append(i == 0 ? '[' : ',');
            const std::size_t begin = m_out.size();
            lost = group.read(i, *this) || lost;
            if (m_out.size() == begin) {
                m_out.append('{');
            } else {
                m_out.replace(begin, '{'); // the comma in front of the first key
            }
            m_out.append('}');
        }
        m_out.append(']');
        return lost;
    }

private:
    void write(char value) { writeJsonString(m_out, {&value, 1}); }
    void write(std::string_view value) { writeJsonString(m_out, value); }

    void write(const sentTime_t& value) {
        m_out.append('"');
        writeTime(m_out, value);
        m_out.append('"');
    }

    void write(const fieldTexts_t& texts) {
        char separator = '[';
        for (unsigned i = texts.first; i < texts.sentence.fieldCount(); ++i) {
            m_out.append(separator);
            writeJsonString(m_out, texts.sentence.field(i)->toString());
            separator = ',';
        }
        m_out.append(']');
    }

    void write(const std::vector<unsigned>& values) {
        char* at = m_out.room(values.size() * longestNumber + longestNumber);
        char separator = '[';
        for (const unsigned value : values) {
            *at++ = separator;
            at = put(at, value);
            separator = ',';
        }
        m_out.setEnd(values.empty() ? copy(at, "[]") : copy(at, "]"));
    }

    void write(const satelliteList_t& satellites) {
        constexpr std::size_t longestSatellite = 4 * (longestNumber + 16);
        const auto count = static_cast<std::size_t>(satellites.last - satellites.first);
        char* at = m_out.room((count + 1) * longestSatellite);
        char separator = '[';
        for (const satellite_t& satellite : satellites) {
            *at++ = separator;
            at = put(at, satellite, m_radians);
            separator = ',';
        }
        m_out.setEnd(count == 0 ? copy(at, "[]") : copy(at, "]"));
    }

    buffer_t& m_out;
    bool m_radians;
};

// ",\"type\":\"NAME\""
template <typename Record>
constexpr auto typeMemberOf() {
    fixedText_t<Record::name.size() + 10> member;
    char* at = member.text;
    for (const std::string_view part :
         {std::string_view(",\"type\":\""), Record::name, std::string_view("\"")}) {
        for (const char c : part) {
            *at++ = c;
        }
    }
    return member;
}
template <typename Record>
constexpr auto typeMember = typeMemberOf<Record>();

constexpr auto typeMembers = arrayOfRecords([](auto record) {
    using record_t = decltype(record);
    return std::string_view(typeMember<record_t>.text, sizeof typeMember<record_t> - 1);
});

const char* nameOf(dayRule_t rule) {
    switch (rule) {
    case dayRule_t::own: return "own";
    case dayRule_t::near: return "near";
    case dayRule_t::stamp: return "stamp";
    case dayRule_t::option: return "option";
    case dayRule_t::isVoid: return "void";
    case dayRule_t::rollover: return "rollover";
    }
    return "";
}

void writeText(buffer_t& out, std::string_view key, std::string_view text) {
    out.append(key);
    writeJsonString(out, text);
}

void writeHexByte(buffer_t& out, std::string_view key, unsigned byte) {
    constexpr const char* digits = "0123456789ABCDEF";
    out.append(key);
    out.append(digits[byte >> 4]);
    out.append(digits[byte & 0xF]);
    out.append('"');
}

} // namespace

jsonWriter_t::jsonWriter_t(buffer_t& out, const jsonOptions_t& options)
    : m_out(out), m_options(options) {}

void jsonWriter_t::setSource(std::string_view name) {
    buffer_t source;
    source.append("{\"source\":");
    writeJsonString(source, name);
    m_source = source.text();
}

void jsonWriter_t::write(const record_t& record, scratch_t& scratch) {
    writeBegin(record);
    bool isLost = record.hasMore;
    const bool hasView = visitRecord(record, scratch, [&](auto kind, const auto& recordView) {
        valueSink_t sink(m_out, m_options.radians);
        isLost = readValues<decltype(kind)>(recordView, sink) || isLost;
    });
    if (const auto* sentence = std::get_if<const kalo::nmeaFormat_t*>(&record.content)) {
        if (record.entry != nullptr) {
            valueSink_t sink(m_out, m_options.radians);
            isLost = readValues(*record.entry, **sentence, record.clue, sink) || isLost;
        }
        if (!record.hasChecksum) {
            m_out.append(",\"checksum\":false");
        }
        if (!hasView && record.entry == nullptr) {
            writeFields(**sentence);
        }
    }
    if (record.fault != fault_t::none) {
        writeFault(record);
    }
    if (!record.suffix.empty()) {
        writeText(m_out, ",\"suffix\":", record.suffix);
    }
    const bool isShown = isLost || m_options.raw || record.fault != fault_t::none;
    if (isShown && !record.raw.empty()) {
        writeText(m_out, ",\"raw\":", record.raw);
    }
    m_out.append("}\n");
}

// What stands in front of the values.
void jsonWriter_t::writeBegin(const record_t& record) {
    char* at = m_out.room(m_source.size() + 2 * longestPlain);
    std::memcpy(at, m_source.data(), m_source.size());
    at = put(copy(at + m_source.size(), ",\"line\":"), record.line);
    if (!record.raw.empty()) {
        at = put(copy(at, ",\"offset\":"), record.offset);
    }
    m_out.setEnd(at);
    if (!record.received.empty()) {
        writeText(m_out, ",\"received\":", record.received);
    }
    if (!record.tags.empty()) {
        m_out.append(",\"tag\":");
        m_tags.write(m_out, record.tags);
    }
    if (!record.prefix.empty()) {
        writeText(m_out, ",\"prefix\":", record.prefix);
    }
    if (record.entry != nullptr) {
        m_out.append(",\"type\":\"");
        m_out.append(record.entry->name);
        m_out.append('"');
    } else {
        m_out.append(record.type == noType ? std::string_view(",\"type\":null")
                                           : typeMembers[record.type]);
    }
    if (!record.talker.empty()) {
        writeText(m_out, ",\"talker\":", record.talker);
    }
    if (record.instant) {
        writeInstant(*record.instant);
        if (m_options.explain) {
            writeText(m_out, ",\"timeRule\":", nameOf(record.instant->rule));
        }
    }
}

void jsonWriter_t::writeFields(const kalo::nmeaFormat_t& sentence) {
    writeText(m_out, ",\"address\":", sentence.field(0)->toString());
    m_out.append(",\"fields\":[");
    for (unsigned i = 1; i < sentence.fieldCount(); ++i) {
        m_out.append(i > 1 ? "," : "");
        writeJsonString(m_out, sentence.field(i)->toString());
    }
    m_out.append(']');
}

void jsonWriter_t::writeFault(const record_t& record) {
    writeText(m_out, ",\"error\":", faultText(record.fault));
    if (record.fault == fault_t::checksumMismatch) {
        writeHexByte(m_out, ",\"stated\":\"", record.stated);
        writeHexByte(m_out, ",\"computed\":\"", record.computed);
    }
}

void jsonWriter_t::writeInstant(const instant_t& instant) {
    char* at = copy(m_out.room(2 * longestPlain), ",\"time\":");
    if (m_options.epoch) {
        m_out.setEnd(put(at, instant.timestamp));
        return;
    }
    *at++ = '"';
    at = put(at, instant.date);
    *at++ = 'T';
    m_out.setEnd(at);
    writeTime(m_out, instant.time);
    m_out.append("Z\"");
}
