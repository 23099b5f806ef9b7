// Writes a record as one JSON object on a line.
#pragma once

#include <string_view>

#include <fmt/format.h>

#include "tools/dating.h"
#include "tools/recordSplitter.h"
#include "tools/recordTable.h"

struct jsonOptions_t {
    bool radians = false; ///< angles as the library gives them
    bool raw = false;     ///< every record with its bytes
    bool epoch = false;   ///< instants as Unix seconds
};

/// What is known about a record.
struct jsonRecord_t {
    std::string_view input;             ///< the name of the input
    const record_t* record = nullptr;   ///< without bytes of its own where others gave rise to it
    const recordType_t* type = nullptr; ///< null for an unknown sentence and when malformed
    std::string_view talker;            ///< empty: none
    const source_t* values = nullptr;   ///< null without values of a known type
    const instant_t* instant = nullptr; ///< null when not known
};

/// Appends the record, with its line end.
void writeJson(fmt::memory_buffer& out, const jsonRecord_t& json, const jsonOptions_t& options);

/// Appends `bytes` as a JSON string. Valid UTF-8 stays as it is, a byte of anything else becomes
/// the four characters \xHH and a backslash is doubled, so that the bytes can be had back.
void writeJsonString(fmt::memory_buffer& out, std::string_view bytes);
