// `kalo check`: the faults of a recording, and anything else that an operator should know about it.
#pragma once

#include <string>
#include <vector>

#include "tools/analysis/check.h"
#include "tools/command/recordInputs.h"
#include "tools/output/output.h"

enum class checkFormat_t {
    text,
    json, ///< an object a line
    junit ///< XML, a test case for each kind of finding
};

struct checkCommandOptions_t {
    std::vector<std::string> files; ///< "-" is standard input
    outputOptions_t output;
    inputOptions_t read;
    checkOptions_t check;
    std::vector<findingId_t> ignored;
    bool areNotesFaults = false;
    bool printsEach = false; ///< each finding on its own, not in groups
    checkFormat_t format = checkFormat_t::text;
};

/// Returns the exit status.
int checkCommand(const checkCommandOptions_t& options);
