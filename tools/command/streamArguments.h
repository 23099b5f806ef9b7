// The arguments that say where output goes, and how long or growing inputs are read.
#pragma once

#include "tools/command/arguments.h"
#include "tools/output/output.h"

/// `--output`.
option_t outputOption(outputOptions_t& output);
