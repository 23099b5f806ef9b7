// `kalo encode tss1`: what `kalo decode` prints of motion records, as JSON lines or CSV, back to
// TSS1.
#pragma once

#include <string>
#include <vector>

struct encodeOptions_t {
    std::vector<std::string> files; ///< "-" is standard input
    bool radians = false;           ///< roll and pitch in radians, not degrees
};

/// Returns the exit status.
int encodeCommand(const encodeOptions_t& options);
