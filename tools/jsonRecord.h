// Writes a record as one JSON object on a line.
#pragma once

#include <string_view>

#include <fmt/format.h>

#include "kalo/nmea/nmeaMsg.h"
#include "tools/recordSplitter.h"
#include "tools/recordTable.h"

struct jsonOptions_t {
    bool radians = false; ///< angles as the library gives them
    bool raw = false;     ///< every record with its bytes
};

/// Appends the record of the input called `source`. `type` is that of its sentence, null for an
/// unknown one and for a malformed record; `view` is null without a typed view.
void writeJson(fmt::memory_buffer& out, std::string_view source, const record_t& record,
               const recordType_t* type, const kalo::nmeaMsg_t* view, const jsonOptions_t& options);

/// Appends `bytes` as a JSON string. Valid UTF-8 stays as it is, a byte of anything else becomes
/// the four characters \xHH and a backslash is doubled, so that the bytes can be had back.
void writeJsonString(fmt::memory_buffer& out, std::string_view bytes);
