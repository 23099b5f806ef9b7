// `kalo report`: one page that shows what is in a recording.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/analysis/check.h"
#include "tools/analysis/summary.h"
#include "tools/command/recordInputs.h"
#include "tools/output/output.h"

struct reportCommandOptions_t {
    std::vector<std::string> files; ///< "-" is standard input
    outputOptions_t output;
    inputOptions_t read;
    summaryOptions_t summary;
    checkOptions_t check;
    std::optional<double> since; ///< Unix seconds, as is the next
    std::optional<double> until;
    std::size_t maxPoints = 2000;       ///< of each series, and of the track
    std::vector<std::string> arguments; ///< of the command line, for the page
};

/// Returns the exit status.
int reportCommand(const reportCommandOptions_t& options);
