// The arguments that say where output goes, and how long or growing inputs are read.
#pragma once

#include <string>
#include <vector>

#include "tools/command/arguments.h"
#include "tools/output/output.h"

/// `--output`.
option_t outputOption(outputOptions_t& output);
/// `--follow`.
option_t followOption(bool& follows);

/// Throws `usageError_t` if this input cannot be followed.
void checkFollowed(const std::string& name);
/// Throws `usageError_t` unless ranges can be read of the inputs: one regular file.
void checkRanged(const std::vector<std::string>& names);
