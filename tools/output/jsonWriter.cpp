#include "tools/output/jsonWriter.h"

#include "tools/output/jsonString.h"
#include "tools/output/numberText.h"
#include "tools/record/registry.h"

namespace {

constexpr double degreesPerRadian = 180 / 3.141592653589793;

template <typename Number>
void writeNumber(buffer_t& out, Number value) {
    out.setEnd(writeInteger(out.room(longestNumber), value));
}
void writeNumber(buffer_t& out, double value) {
    out.setEnd(writeShortest(out.room(longestNumber), value));
}
void writeNumber(buffer_t& out, float value) {
    out.setEnd(writeShortest(out.room(longestNumber), value));
}

void writeAngle(buffer_t& out, double radians, bool asRadians) {
    char* const at = out.room(longestNumber);
    out.setEnd(asRadians ? writeShortest(at, radians)
                         : writeFifteenDigits(at, radians * degreesPerRadian));
}

void writePair(buffer_t& out, unsigned value, char separator) {
    out.setEnd(writePadded(out.room(longestNumber), value, 2));
    out.append(separator);
}

void writeTime(buffer_t& out, const sentTime_t& sent) {
    writePair(out, sent.time.hour, ':');
    writePair(out, sent.time.minute, ':');
    out.setEnd(writePadded(out.room(longestNumber), sent.second, 2));
    if (!sent.fraction.empty()) {
        out.append('.');
        out.append(sent.fraction);
    }
}

void writeDate(buffer_t& out, const kalo::date_t& date) {
    out.setEnd(writePadded(out.room(longestNumber), date.year, 4));
    out.append('-');
    writePair(out, date.month, '-');
    out.setEnd(writePadded(out.room(longestNumber), date.day, 2));
}

// Takes the values of a record and writes those that are there.
class valueSink_t {
public:
    valueSink_t(buffer_t& out, bool radians) : m_out(out), m_radians(radians) {}

    template <typename Column, typename T>
    void value(Column /*column*/, const T& value) {
        m_out.append(",\"");
        m_out.append(Column::row.name);
        m_out.append("\":");
        if constexpr (Column::row.unit.radianName != nullptr) {
            writeAngle(m_out, value, m_radians);
        } else {
            write(value);
        }
    }

    template <typename Column>
    void none(Column /*column*/) {}

private:
    void write(bool value) { m_out.append(value ? "true" : "false"); }
    void write(unsigned value) { writeNumber(m_out, std::uint64_t{value}); }
    void write(unsigned short value) { write(unsigned{value}); }
    void write(int value) { writeNumber(m_out, value); }
    void write(float value) { writeNumber(m_out, value); }
    void write(double value) { writeNumber(m_out, value); }
    void write(char value) { writeJsonString(m_out, {&value, 1}); }
    void write(std::string_view value) { writeJsonString(m_out, value); }

    void write(const sentTime_t& value) {
        m_out.append('"');
        writeTime(m_out, value);
        m_out.append('"');
    }

    void write(const kalo::date_t& value) {
        m_out.append('"');
        writeDate(m_out, value);
        m_out.append('"');
    }

    void write(const std::vector<unsigned>& values) {
        char separator = '[';
        for (const unsigned value : values) {
            m_out.append(separator);
            write(value);
            separator = ',';
        }
        m_out.append(values.empty() ? "[]" : "]");
    }

    void write(const satelliteList_t& satellites) {
        char separator = '[';
        for (const satellite_t& satellite : satellites) {
            m_out.append(separator);
            write(satellite);
            separator = ',';
        }
        m_out.append(separator == '[' ? "[]" : "]");
    }

    void write(const satellite_t& satellite) {
        char separator = '{';
        const auto key = [&](const char* name) {
            m_out.append(separator);
            m_out.append(name);
            separator = ',';
        };
        if (satellite.hasPrn) {
            key("\"prn\":");
            write(satellite.prn);
        }
        if (satellite.hasElevation) {
            key("\"elevation\":");
            writeAngle(m_out, satellite.elevation, m_radians);
        }
        if (satellite.hasAzimuth) {
            key("\"azimuth\":");
            writeAngle(m_out, satellite.azimuth, m_radians);
        }
        if (satellite.hasSnr) {
            key("\"snr\":");
            write(satellite.snr);
        }
        m_out.append(separator == '{' ? "{}" : "}");
    }

    buffer_t& m_out;
    bool m_radians;
};

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
    const bool hasView = visitRecord(record, scratch, [&](auto kind, const auto& source) {
        valueSink_t sink(m_out, m_options.radians);
        isLost = readValues<decltype(kind)>(source, sink) || isLost;
    });
    if (const auto* sentence = std::get_if<const kalo::nmeaFormat_t*>(&record.content)) {
        if (!record.hasChecksum) {
            m_out.append(",\"checksum\":false");
        }
        if (!hasView) {
            writeFields(**sentence);
        }
    }
    if (record.fault != fault_t::none) {
        writeFault(record);
    }
    const bool isShown = isLost || m_options.raw || record.fault != fault_t::none;
    if (isShown && !record.raw.empty()) {
        writeText(m_out, ",\"raw\":", record.raw);
    }
    m_out.append("}\n");
}

// What stands in front of the values.
void jsonWriter_t::writeBegin(const record_t& record) {
    m_out.append(m_source);
    m_out.append(",\"line\":");
    writeNumber(m_out, record.line);
    if (!record.raw.empty()) {
        m_out.append(",\"offset\":");
        writeNumber(m_out, record.offset);
    }
    if (!record.received.empty()) {
        writeText(m_out, ",\"received\":", record.received);
    }
    if (!record.prefix.empty()) {
        writeText(m_out, ",\"prefix\":", record.prefix);
    }
    if (record.type == noType) {
        m_out.append(",\"type\":null");
    } else {
        m_out.append(",\"type\":\"");
        m_out.append(recordTypes[record.type].name);
        m_out.append('"');
    }
    if (!record.talker.empty()) {
        writeText(m_out, ",\"talker\":", record.talker);
    }
    if (record.instant) {
        writeInstant(*record.instant);
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
    m_out.append(",\"time\":");
    if (m_options.epoch) {
        writeNumber(m_out, instant.timestamp);
        return;
    }
    m_out.append('"');
    writeDate(m_out, instant.date);
    m_out.append('T');
    writeTime(m_out, instant.time);
    m_out.append("Z\"");
}
