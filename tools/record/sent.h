// Whether the fields of a value hold anything. An empty field does not.
#pragma once

#include <cstdint>

#include "kalo/nmea/nmeaMsg.h"
#include "kalo/ntrip/ntripRecordDecoder.h"
#include "kalo/sensors/atsAsciiMsg.h"
#include "kalo/sensors/tss1Msg.h"

struct satelliteGroup_t;

/// The fields of a record that a value reads, one bit for each; the lowest bit is the first field.
/// The highest bit stands for its field and all fields after it.
using fieldSet_t = std::uint64_t;
constexpr unsigned fieldBits = 64;

bool isSent(const kalo::nmeaMsg_t& sentence, fieldSet_t fields);
bool isSent(const kalo::ntripRecordDecoder_t& record, fieldSet_t fields);
bool isSent(const kalo::atsAsciiMsg_t& record, fieldSet_t fields);
/// A motion record has all its columns.
inline bool isSent(const kalo::tss1Msg_t& /*record*/, fieldSet_t /*fields*/) { return true; }
inline bool isSent(const satelliteGroup_t& /*group*/, fieldSet_t /*fields*/) { return false; }
