// The lines of an input one after another, with the output kept in step for a live reader.
#pragma once

#include <functional>

#include "tools/input.h"
#include "tools/lineSplitter.h"
#include "tools/output.h"

/// Hands every line that is not blank to `use`; false, with a message, when the input could not be
/// read to its end. Ends early when the output is closed or a stop signal came.
bool readLines(input_t& input, output_t& output, const std::function<void(const line_t&)>& use);
