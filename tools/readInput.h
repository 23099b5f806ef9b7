// Reads an input to its end, with the output kept in step for a live reader.
#pragma once

#include <functional>
#include <string_view>

#include "tools/input.h"
#include "tools/lineSplitter.h"
#include "tools/output.h"

/// Hands on what can be had, block by block; each must be used before the next. Ends early when the
/// output is closed or a stop signal came. False, with a message, when the input could not be read
/// to its end or is compressed.
bool readBlocks(input_t& input, output_t& output,
                const std::function<void(std::string_view block)>& use);

/// The same line by line, without the blank ones.
bool readLines(input_t& input, output_t& output,
               const std::function<void(const line_t& line)>& use);
