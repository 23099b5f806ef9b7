// The values of a record by the names of their rows in the record table.
#pragma once

#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "tests/sentence.h"
#include "tools/record/recordClue.h"
#include "tools/record/registry.h"

/// As texts, which differ where the values do; empty for a value that is absent.
using values_t = std::map<std::string, std::string>;

template <typename T>
std::string textOf(const T& value) {
    std::ostringstream text;
    text.precision(17);
    text << value;
    return text.str();
}
inline std::string textOf(const kalo::date_t& date) {
    return textOf(date.year) + '-' + textOf(date.month) + '-' + textOf(date.day);
}
inline std::string textOf(const kalo::timeOfDay_t& time) {
    return textOf(time.hour) + ':' + textOf(time.minute) + ':' + textOf(time.second);
}
inline std::string textOf(const sentTime_t& sent) { return textOf(sent.time); }
template <typename List>
std::string textOfList(const List& list) {
    std::string text;
    for (const auto& entry : list) {
        text += textOf(entry) + ' ';
    }
    return text;
}
inline std::string textOf(const std::vector<unsigned>& numbers) { return textOfList(numbers); }
inline std::string textOf(const satellite_t& satellite) {
    return textOfList(std::vector<double>{static_cast<double>(satellite.prn), satellite.elevation,
                                          satellite.azimuth, satellite.snr});
}
inline std::string textOf(const satelliteList_t& satellites) { return textOfList(satellites); }

struct textSink_t {
    values_t values;

    template <typename Column, typename T>
    void value(Column /*column*/, const T& value) {
        values[Column::row.name] = textOf(value);
    }
    template <typename Column>
    void none(Column /*column*/) {
        values[Column::row.name] = "";
    }
};

/// What is decoded of a record, behind which nothing can be read: of a sentence without checksum
/// and line end, or of a line.
inline values_t valuesOf(typeIndex_t type, const std::string& text) {
    const kalo::nmeaFormat_t format = framed(text);
    const kalo::atsAsciiMsg_t tracking(guarded(text).data(), text.size());
    kalo::tss1Msg_t motion;
    kalo::ntripStreamDecoder_t table;
    std::vector<satellite_t> satellites;
    char milliseconds[3] = {};
    record_t record;
    record.type = type;
    record.text = text;
    if (type < sentenceCount) {
        readSentenceClue(format, type, satellites, record.clue);
        record.content = &format;
    } else if (type == typeOf<motionRecord_t>) {
        motion.init(guarded(text).data(), text.size());
        record.content = &motion;
    } else if (type == typeOf<trackingRecord_t>) {
        readTrackingClue(tracking, milliseconds, record.clue);
        record.content = &tracking;
    } else {
        const std::string line = text + '\n';
        table.init(guarded(line).data(), static_cast<unsigned>(line.size()));
        record.content = &table;
    }
    scratch_t scratch;
    textSink_t sink;
    visitRecord(record, scratch, [&](auto kind, const auto& recordView) {
        readValues<decltype(kind)>(recordView, sink);
    });
    return sink.values;
}
