// Reads an input to its end, with the output kept in step for a live reader.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "tools/input/lineSplitter.h"
#include "tools/output/output.h"

/// What is done with the bytes of an input, or of each member of an archive.
struct byteUser_t {
    std::function<void(const std::string& name)> begin;
    std::function<void(std::string_view block)> use; ///< each must be used before the next
    /// There are no more; after a stop signal the last may be cut anywhere.
    std::function<void()> end;
};

/// Opens an input, "-" being standard input, and hands on what can be had, block by block.
/// Compressed data are unpacked; the members of an archive are inputs of their own, with names such
/// as "logs.tar:monday.log". Ends early when the output is closed or a stop signal came. False,
/// with a message, when the input could not be read to its end, or is the output.
bool readBlocks(const std::string& name, output_t& output, const byteUser_t& user);

/// What is done with the lines of an input, or of each member of an archive, without blank ones.
struct lineUser_t {
    std::function<void(const std::string& name)> begin;
    std::function<void(const line_t& line)> use; ///< of a line that is too long its first part
};

/// The same line by line.
bool readLines(const std::string& name, output_t& output, const lineUser_t& user);

constexpr int exitFailure = 1;
constexpr int exitUsage = 2;
constexpr int exitSignal = 128; // plus the signal's number

/// Ends a run: writes out what is left, says why not if that fails, and returns the exit status.
/// `status` is that of what was done so far. A reader that went away is no failure.
int finish(output_t& output, int status);
