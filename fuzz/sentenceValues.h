// All values of a sentence, read through the view of any class.
#pragma once

#include <array>
#include <string>
#include <utility>

#include "tools/record/recordClue.h"
#include "tools/record/registry.h"

namespace fuzz {

template <typename T>
void appendBytes(std::string& out, const T& value) {
    static_assert(std::is_arithmetic_v<T> || std::is_enum_v<T>);
    out.append(reinterpret_cast<const char*>(&value), sizeof value);
}
inline void appendBytes(std::string& out, std::string_view text) { out += text; }
inline void appendBytes(std::string& out, const std::string& text) { out += text; }
inline void appendBytes(std::string& out, const kalo::date_t& date) {
    appendBytes(out, date.year);
    appendBytes(out, date.month);
    appendBytes(out, date.day);
}
inline void appendBytes(std::string& out, const kalo::timeOfDay_t& time) {
    appendBytes(out, time.hour);
    appendBytes(out, time.minute);
    appendBytes(out, time.second);
}
inline void appendBytes(std::string& out, const sentTime_t& sent) {
    appendBytes(out, sent.time);
    out += sent.fraction;
}
inline void appendBytes(std::string& out, const std::vector<unsigned>& list) {
    for (const unsigned number : list) {
        appendBytes(out, number);
    }
}
inline void appendBytes(std::string& out, const satelliteList_t& satellites) {
    for (const satellite_t& satellite : satellites) {
        appendBytes(out, satellite.prn);
        appendBytes(out, satellite.elevation);
        appendBytes(out, satellite.azimuth);
        appendBytes(out, satellite.snr);
    }
}

/// Takes the values that are there as bytes, to compare them.
struct bytesSink_t {
    std::string bytes;

    template <typename Column, typename T>
    void value(Column /*column*/, const T& value) {
        bytes += '+';
        appendBytes(bytes, value);
    }
    template <typename Column>
    void none(Column /*column*/) {
        bytes += '-';
    }
};

/// The values that the view class of the sentence at `index` in the library's list reads in any
/// sentence.
template <std::size_t index>
std::string valuesAs(const kalo::nmeaFormat_t& format) {
    using record_t = sentenceRecord_t<index>;
    bytesSink_t sink;
    if constexpr (!std::is_same_v<typename record_t::view_t, kalo::noView_t>) {
        std::vector<satellite_t> satellites;
        clue_t clue;
        scratch_t scratch;
        readSentenceClue(format, index, satellites, clue);
        const typename record_t::view_t view(format);
        readValues<record_t>(
            recordView_t<typename record_t::view_t>{view, clue, std::string_view(), scratch}, sink);
    }
    return sink.bytes;
}

template <std::size_t... index>
std::array<std::string, sizeof...(index)> valuesAsEach(const kalo::nmeaFormat_t& format,
                                                       std::index_sequence<index...> /*all*/) {
    return {valuesAs<index>(format)...};
}

/// The same for each class.
inline std::array<std::string, sentenceCount> valuesAsEach(const kalo::nmeaFormat_t& format) {
    return valuesAsEach(format, std::make_index_sequence<sentenceCount>{});
}

} // namespace fuzz
