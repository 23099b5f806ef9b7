#include "tools/output/jsonWriter.h"

#include <cstring>

#include "tools/output/jsonString.h"
#include "tools/record/recordValues.h"
#include "tools/record/satelliteMembers.h"

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

char* writeSatellite(char* at, const satellite_t& satellite, bool asRadians) {
    char* const begin = at;
    forEachSatelliteColumn([&](auto column) {
        using column_t = decltype(column);
        static constexpr auto key = keyOf<column_t>();
        if (!column_t::row.isIn(satellite)) {
            return;
        }
        at = key.copyTo(at);
        if constexpr (column_t::row.unit.radianName != nullptr) {
            at = writeAngle(at, column_t::row.valueOf(satellite), asRadians);
        } else {
            at = writePlain(at, column_t::row.valueOf(satellite));
        }
    });
    if (at == begin) {
        *at++ = '{';
    }
    *begin = '{'; // in the place of the first comma
    *at++ = '}';
    return at;
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
            m_out.setEnd(writeAngle(at, value, m_radians));
        } else if constexpr (std::is_same_v<T, kalo::date_t>) {
            *at = '"';
            char* const end = writePlain(at + 1, value);
            *end = '"';
            m_out.setEnd(end + 1);
        } else if constexpr (isPlainType<T>) {
            m_out.setEnd(writePlain(at, value));
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
            char* const end = writePlain(at + 1, value);
            *end = '"';
            m_out.setEnd(end + 1);
        } else if constexpr (std::is_same_v<T, double>) {
            char* const at = m_out.room(longestPlain);
            m_out.setEnd(column.row.isAngle() ? writeAngle(at, value, m_radians)
                                              : writePlain(at, value));
        } else if constexpr (std::is_same_v<T, std::int64_t>) {
            m_out.setEnd(writePlain(m_out.room(longestPlain), value));
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
            at = writePlain(at, value);
            separator = ',';
        }
        m_out.setEnd(values.empty() ? writeLiteral(at, "[]") : writeLiteral(at, "]"));
    }

    void write(const satelliteList_t& satellites) {
        constexpr std::size_t longestSatellite = 4 * (longestNumber + 16);
        const auto count = static_cast<std::size_t>(satellites.last - satellites.first);
        char* at = m_out.room((count + 1) * longestSatellite);
        char separator = '[';
        for (const satellite_t& satellite : satellites) {
            *at++ = separator;
            at = writeSatellite(at, satellite, m_radians);
            separator = ',';
        }
        m_out.setEnd(count == 0 ? writeLiteral(at, "[]") : writeLiteral(at, "]"));
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

void writeText(buffer_t& out, std::string_view key, std::string_view text) {
    out.append(key);
    writeJsonString(out, text);
}

} // namespace

jsonWriter_t::jsonWriter_t(buffer_t& out, const valueOptions_t& options)
    : m_out(out), m_options(options) {}

void jsonWriter_t::setSource(std::string_view name) {
    buffer_t source;
    source.append("{\"source\":");
    writeJsonString(source, name);
    m_source = source.text();
}

void jsonWriter_t::write(const record_t& record, scratch_t& scratch) {
    writeBegin(record);
    const bool isLost = readRecord(record, scratch, valueSink_t(m_out, m_options.radians));
    if (const auto* sentence = std::get_if<const kalo::nmeaFormat_t*>(&record.content)) {
        if (!record.hasChecksum) {
            m_out.append(",\"checksum\":false");
        }
        if (!hasNamedValues(record)) {
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
    at = writeLiteral(at + m_source.size(), ",\"line\":");
    at = record.line > 0 ? writePlain(at, record.line) : writeLiteral(at, "null");
    if (!record.raw.empty()) {
        at = writePlain(writeLiteral(at, ",\"offset\":"), record.offset);
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
        writeTimeMember(*record.instant);
        if (m_options.explain) {
            writeText(m_out, ",\"timeRule\":", dayRuleText(record.instant->rule));
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
        m_out.append(",\"stated\":\"");
        writeHexByte(m_out, record.stated);
        m_out.append("\",\"computed\":\"");
        writeHexByte(m_out, record.computed);
        m_out.append('"');
    }
}

void jsonWriter_t::writeTimeMember(const instant_t& instant) {
    if (m_options.epoch) {
        char* const at = writeLiteral(m_out.room(longestPlain), ",\"time\":");
        m_out.setEnd(writePlain(at, instant.timestamp));
    } else {
        writeInstant(m_out, instant, ",\"time\":\"", "Z\"");
    }
}
