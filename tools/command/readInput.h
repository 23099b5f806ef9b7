// Reads an input to its end, with the output kept in step for a live reader.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "tools/input/lineSplitter.h"
#include "tools/output/output.h"

/// Opens an input, "-" being standard input, and hands on what can be had, block by block; each
/// must be used before the next. Ends early when the output is closed or a stop signal came. False,
/// with a message, when the input could not be read to its end, is compressed, or is the output.
bool readBlocks(const std::string& name, output_t& output,
                const std::function<void(std::string_view block)>& use);

/// The same line by line, without the blank ones.
bool readLines(const std::string& name, output_t& output,
               const std::function<void(const line_t& line)>& use);

constexpr int exitFailure = 1;
constexpr int exitUsage = 2;
constexpr int exitSignal = 128; // plus the signal's number

/// Ends a run: writes out what is left, says why not if that fails, and returns the exit status.
/// `status` is that of what was done so far. A reader that went away is no failure.
int finish(output_t& output, int status);
