// `kalo summary`: what is in a recording.
#pragma once

#include <string>
#include <vector>

#include "tools/analysis/summary.h"
#include "tools/command/recordInputs.h"
#include "tools/output/output.h"

struct summaryCommandOptions_t {
    std::vector<std::string> files; ///< "-" is standard input
    outputOptions_t output;
    inputOptions_t read;
    summaryOptions_t summary;
    bool asJson = false;
};

/// Returns the exit status.
int summaryCommand(const summaryCommandOptions_t& options);
