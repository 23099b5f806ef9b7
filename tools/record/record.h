// One record of an input, decoded and dated.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <variant>

#include "kalo/nmea/nmeaFormat.h"
#include "kalo/ntrip/ntripStreamDecoder.h"
#include "kalo/sensors/atsAsciiMsg.h"
#include "kalo/sensors/tss1Msg.h"
#include "tools/input/pieces.h"
#include "tools/record/clue.h"
#include "tools/record/dictionary.h"
#include "tools/record/satelliteGroups.h"
#include "tools/time/dating.h"

/// The position of a record's type in the registry (tools/record/registry.h).
using typeIndex_t = std::size_t;
constexpr typeIndex_t noType = static_cast<typeIndex_t>(-1);

/// Nothing was decoded.
struct nothing_t {};

/// What a record holds, by its kind; owned by the reader.
using content_t = std::variant<nothing_t, const kalo::nmeaFormat_t*, const kalo::tss1Msg_t*,
                               const kalo::atsAsciiMsg_t*, const kalo::ntripStreamDecoder_t*,
                               const satelliteGroup_t*>;

/// A record is valid until the next one is taken from its reader.
struct record_t {
    std::uint64_t line = 0;    ///< its number, from 1; 0 if it is not known
    std::uint64_t offset = 0;  ///< of `raw` in the input
    std::string_view raw;      ///< all its bytes, without the line end; none of SATELLITES
    std::string_view received; ///< when it was received, by a stamp in its line
    std::string_view tags;     ///< the tag blocks in front of a sentence
    std::string_view prefix;   ///< any other text in front
    std::string_view text;     ///< the record itself; for a sentence, up to its checksum
    std::string_view suffix;   ///< what stands behind a sentence
    std::string_view talker;
    typeIndex_t type = noType; ///< set for a known sentence even if it has no view
    const dictionarySentence_t* entry = nullptr; ///< what describes a sentence without a view
    content_t content;
    fault_t fault = fault_t::none; ///< a tracking record keeps its content with a wrong checksum
    bool hasChecksum = false;      ///< of a sentence
    bool hasMore = false;          ///< bytes follow that no value reads
    unsigned stated = 0;           ///< with `checksumMismatch`
    unsigned computed = 0;         ///< with `checksumMismatch`
    clue_t clue;
    std::optional<instant_t> instant;
    std::optional<double> reference; ///< the last known instant of the input
};

/// When the record was: its own instant, otherwise its time of reception (taken as UTC if it has no
/// zone), otherwise the instant of the records before it.
inline std::optional<double> momentOf(const record_t& record) {
    if (record.instant) {
        return placeInTime(record.instant->timestamp, record.instant->time.time.second);
    }
    return record.clue.hasStamp ? std::optional(record.clue.stamp) : record.reference;
}
