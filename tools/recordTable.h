// What each record type holds: one row a value, with its name, unit, the fields that it reads, its
// meaning and its reader. Every output of the tool is made from these rows.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "kalo/nmea/nmeaMsg.h"
#include "kalo/time/dateTime.h"

/// A time of day together with the text of its seconds, whose digits the output keeps.
struct sentTime_t {
    kalo::timeOfDay_t time;
    std::string_view seconds;
};

/// A value as it was read; `std::monostate` when it did not decode.
using value_t = std::variant<std::monostate, unsigned, double, sentTime_t>;

struct unit_t {
    const char* name;
    const char* radianName; ///< with --radians; null for what is no angle
};

/// Which fields of a sentence a value reads: one bit each, the address field being the lowest.
using fieldSet_t = std::uint64_t;

using reader_t = value_t (*)(const kalo::nmeaMsg_t& view);

struct valueRow_t {
    const char* name;
    unit_t unit;
    fieldSet_t fields;
    const char* meaning;
    reader_t read;
};

struct recordType_t {
    const char* name;
    const char* meaning;
    const valueRow_t* rows; ///< null for a type without a view
    std::size_t rowCount;

    const valueRow_t* begin() const { return rows; }
    const valueRow_t* end() const { return rows + rowCount; }
};

/// The row of a sentence type; null for `msgTypeUnknown`.
const recordType_t* sentenceType(kalo::nmeaMsgType_t type);

/// All record types in the order of their listing, for `kalo fields` and the choice by name.
extern const recordType_t* const recordTypes;
extern const std::size_t recordTypeCount;

/// The fields of a set for people: "2,3" or "4-8".
std::string fieldList(fieldSet_t fields);
