// What each record type holds: one row a value, with its name, unit, the fields that it reads, its
// meaning and its reader. Every output of the tool is made from these rows.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "kalo/nmea/nmeaMsg.h"
#include "kalo/ntrip/ntripRecordType.h"
#include "kalo/ntrip/ntripStreamDecoder.h"
#include "kalo/sensors/atsAsciiMsg.h"
#include "kalo/sensors/tss1Msg.h"
#include "kalo/time/dateTime.h"

/// One satellite in view; what did not decode is not there.
struct satellite_t {
    bool lost = false; ///< something was sent and did not decode
    bool hasPrn = false;
    bool hasElevation = false;
    bool hasAzimuth = false;
    bool hasSnr = false;
    unsigned prn = 0;
    double elevation = 0; ///< radians
    double azimuth = 0;   ///< radians
    double snr = 0;       ///< dB-Hz
};

/// The satellites that a complete group of sentences has put together.
struct satelliteSet_t {
    bool hasSignalId = false;
    unsigned signalId = 0;
    std::vector<satellite_t> satellites;
};

/// What the values of a record are read from: the one of its kind is set.
struct source_t {
    const kalo::nmeaMsg_t* sentence = nullptr;
    const satelliteSet_t* satellites = nullptr;
    const kalo::tss1Msg_t* motion = nullptr;
    const kalo::atsAsciiMsg_t* tracking = nullptr;
    const kalo::ntripStreamDecoder_t* table = nullptr;
    std::string_view text; ///< the record's own
};

/// Not decoded, although it was sent if one of its fields is not empty.
using undecoded_t = std::monostate;
/// Not there, and nothing is lost by that.
struct absent_t {};

/// A time of day together with the text of its seconds, whose digits the output keeps.
struct sentTime_t {
    kalo::timeOfDay_t time;
    std::string seconds;
};

/// A value as it was read.
using value_t =
    std::variant<undecoded_t, absent_t, bool, unsigned, int, float, double, char, std::string,
                 sentTime_t, kalo::date_t, std::vector<unsigned>, std::vector<satellite_t>>;

struct unit_t {
    const char* name;
    const char* radianName; ///< with --radians; null for what is no angle
};

/// Which fields of a sentence, or of a record of a sourcetable, a value reads: one bit each, the
/// first field being the lowest; the highest stands for all from its own on.
using fieldSet_t = std::uint64_t;

struct valueRow_t {
    const char* name;
    unit_t unit;
    fieldSet_t fields;
    const char* meaning;
    value_t (*read)(const source_t& source);
    const char* place = nullptr; ///< in a record that has no numbered fields
};

struct recordType_t {
    const char* name;
    const char* meaning;
    const valueRow_t* rows; ///< null for a type without a view
    std::size_t rowCount;

    const valueRow_t* begin() const { return rows; }
    const valueRow_t* end() const { return rows + rowCount; }
};

/// The type of a framed sentence; null for `msgTypeUnknown`.
const recordType_t* sentenceType(kalo::nmeaMsgType_t type);

/// The type of a line of a sourcetable.
const recordType_t& tableType(kalo::ntripRecordType_t line);

// The records that are told apart by their kind alone.
extern const recordType_t& satellitesType; ///< follows a complete group of satellites in view
extern const recordType_t& motionType;
extern const recordType_t& trackingType;

/// All record types in the order of their listing, for `kalo fields` and the choice by name.
extern const recordType_t* const recordTypes;
extern const std::size_t recordTypeCount;

/// Whether one of the fields of a set is not empty.
bool isSent(const source_t& source, fieldSet_t fields);

/// The time of day that a sentence's view answers with.
bool readTimeOfDay(const kalo::nmeaMsg_t& view, sentTime_t& out);

/// How many slots a tracking record has, of which the first four hold no tagged value.
constexpr unsigned trackingSlotCount = 20;

/// The time of day of a tracking record.
bool readTimeOfDay(const kalo::atsAsciiMsg_t& tracking, sentTime_t& out);

/// Where a value stands, for people: "2,3" or "4-8".
std::string placeOf(const valueRow_t& row);
