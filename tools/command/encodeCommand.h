// `kalo encode tss1`: writes motion records from what `kalo decode` prints, or from CSV.
#pragma once

#include <string>
#include <vector>

#include "tools/output/output.h"

struct encodeOptions_t {
    std::vector<std::string> files; ///< "-" is standard input
    outputOptions_t output;
    bool radians = false; ///< roll and pitch are radians, not degrees
};

/// Returns the exit status.
int encodeCommand(const encodeOptions_t& options);
