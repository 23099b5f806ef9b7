// Everything that the library decodes of a log, to compare it with that of another run.
#pragma once

#include <cstdint>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "fuzz/sentenceValues.h"
#include "kalo/kalo.h"
#include "tests/text.h"

/// For each kind of record a number that depends on all values of its records, to the last bit; and
/// one for "texts", which is all that is no number.
using digests_t = std::map<std::string, std::uint64_t>;

inline std::string sampleLog() {
    std::ifstream file(KALO_EXAMPLES "/recordings/voyage.log", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The log without decimals, and with checksums that are right again.
inline std::string withoutDecimals(std::string_view log) {
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    std::string whole;
    while (!log.empty()) {
        const std::size_t length = std::min(log.find('\n'), log.size() - 1) + 1;
        const std::string_view line = log.substr(0, length);
        const bool hasChecksum = length > 5 && line[length - 5] == '*' &&
                                 kalo::nmeaFormat_t(line.data(), length).isValid();
        std::string text;
        bool isDecimal = false;
        for (const char c : line.substr(0, hasChecksum ? length - 5 : length)) {
            isDecimal = c == '.' ? isDecimal || (!text.empty() && isDigit(text.back()))
                                 : isDecimal && isDigit(c);
            if (!isDecimal) {
                text += c;
            }
        }
        whole += hasChecksum ? sentence(text) : text;
        log.remove_prefix(length);
    }
    return whole;
}

class decodeAll_t {
public:
    digests_t operator()(std::string_view log) {
        while (!log.empty()) {
            const std::size_t length = std::min(log.find('\n'), log.size() - 1) + 1;
            line(log.substr(0, length));
            log.remove_prefix(length);
        }
        return m_digests;
    }

private:
    void line(std::string_view text) {
        m_format.init(text.data(), text.size());
        if (m_format.isValid()) {
            framing();
            decodeSentence();
            return;
        }
        std::string why;
        fuzz::appendBytes(why, m_format.formatError());
        add("texts", why);
        m_motion.init(text.data(), text.size());
        if (m_motion.validMask != 0) {
            std::string bytes;
            for (const double value : {m_motion.roll, m_motion.pitch, m_motion.heave,
                                       m_motion.hAccel, m_motion.vAccel}) {
                fuzz::appendBytes(bytes, value);
            }
            kalo::tss1MsgBuilder_t builder;
            builder.validMask = m_motion.validMask;
            builder.roll = m_motion.roll;
            builder.pitch = m_motion.pitch;
            builder.heave = m_motion.heave;
            builder.hAccel = m_motion.hAccel;
            builder.vAccel = m_motion.vAccel;
            builder.status = m_motion.status;
            add("TSS1", bytes);
            add("texts", builder.build());
            return;
        }
        tracking(text);
        m_table.init(text.data(), static_cast<unsigned>(text.size()));
        std::string texts;
        std::string numbers;
        for (unsigned i = 0; i < m_table.fieldCount(); ++i) {
            float number = 0;
            texts += m_table.fieldAt(i) != nullptr ? *m_table.fieldAt(i) : "absent";
            fuzz::appendBytes(numbers, m_table.decodeField(i, number) ? number : -1);
        }
        add("texts", texts);
        add("table", numbers);
    }

    // By way of a stream into memory, which is too short for some sentences.
    void framing() {
        char memory[70];
        kalo::bufferStream_t stream(memory, sizeof memory);
        for (unsigned i = 0; i < m_format.fieldCount(); ++i) {
            stream << m_format.field(i)->toString() << ';';
        }
        std::string bytes(memory, stream.written());
        fuzz::appendBytes(bytes, stream.dropped());
        fuzz::appendBytes(bytes, m_format.type());
        add("texts", bytes);
    }

    void decodeSentence() {
        const std::string name = m_format.field(0)->toString();
        const typeIndex_t type = typeOfSentence(m_format.type());
        add(name, type < sentenceCount ? fuzz::valuesAsEach(m_format)[type] : std::string());
        const std::unique_ptr<kalo::nmeaMsg_t> view(kalo::nmeaMsg_t::create(m_format));
        kalo::timeOfDay_t time;
        if (view != nullptr && view->decodeTimeOfDay(time)) {
            m_context.setDateFromUnix(1773532798);
            add("instants", m_context.timeOfDayToUnix(time));
            add("instants", kalo::gpsTime_t(2410, time.second).toUnix());
        }
        if (const auto* gsv = dynamic_cast<const kalo::gsvMsg_t*>(view.get())) {
            m_satellites.decode(*gsv);
            add("satellites", static_cast<double>(m_satellites.sats().size()));
        }
    }

    void tracking(std::string_view text) {
        const kalo::atsAsciiMsg_t record(text.data(), text.size());
        kalo::date_t date;
        kalo::timeOfDay_t time;
        std::string bytes;
        if (record.decodeDate(date) && record.decodeTimeOfDay(time)) {
            fuzz::appendBytes(bytes, kalo::dateTime_t(date, time).toTimestamp());
        }
        for (unsigned slot = 4; slot < 20; ++slot) {
            double number = 0;
            fuzz::appendBytes(bytes, record.decodeField(slot, number) ? number : -1);
        }
        add("ATS", bytes);
        std::string texts(record.checksumError() ? "wrong" : "right");
        for (unsigned slot = 0; slot < 20; ++slot) {
            std::string field;
            record.decodeField(slot, field);
            texts += field + ';';
        }
        add("texts", texts);
    }

    void add(const std::string& kind, double value) {
        std::string bytes;
        fuzz::appendBytes(bytes, value);
        add(kind, bytes);
    }
    void add(const std::string& kind, const std::string& bytes) {
        std::uint64_t& digest = m_digests[kind];
        for (const char c : bytes) { // FNV-1a
            digest = (digest ^ static_cast<unsigned char>(c)) * 1099511628211U;
        }
        digest += bytes.size();
    }

    digests_t m_digests;
    kalo::nmeaFormat_t m_format;
    kalo::tss1Msg_t m_motion;
    kalo::ntripStreamDecoder_t m_table;
    kalo::timeContext_t m_context;
    kalo::gsvSet_t m_satellites;
};
