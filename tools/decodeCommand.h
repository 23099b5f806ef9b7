// `kalo decode`: records to JSON lines.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/jsonRecord.h"
#include "tools/recordSplitter.h"

struct decodeOptions_t {
    std::vector<std::string> files;         ///< "-" is standard input
    std::vector<const recordType_t*> types; ///< empty: all
    recordOptions_t record;
    jsonOptions_t json;
    std::optional<kalo::date_t> date; ///< on which the inputs begin
    bool onlyValid = false;
    bool quiet = false;
};

/// Returns the exit status.
int decodeCommand(const decodeOptions_t& options);
