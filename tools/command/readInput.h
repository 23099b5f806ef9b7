// Reads an input to its end, and flushes the output before it waits for more.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "tools/input/lineSplitter.h"
#include "tools/input/progress.h"
#include "tools/output/output.h"

/// So many bytes at the start of an input tell whether it is packed.
constexpr std::size_t startSize = 512;
/// What an input that starts like this is, for messages, if it is packed; empty if it is plain
/// text.
std::string packedKind(std::string_view start);

/// What is done with the bytes of an input, or of each member of an archive.
struct byteUser_t {
    std::function<void(const std::string& name)> begin;
    std::function<void(std::string_view block)> use; ///< it is valid during the call
    /// Called after the last block, which may be cut anywhere after a stop signal.
    std::function<void()> end;
};

/// Opens an input ("-" is standard input) and hands on its bytes in blocks, as they arrive.
/// Compressed data are unpacked; the members of an archive are inputs of their own, with names such
/// as "logs.tar:monday.log". Ends early if the output is closed or a stop signal came. False, with
/// a message, if the input could not be read to its end, or if it is the output. `progress` is told
/// what was read, unless it is null.
bool readBlocks(const std::string& name, output_t& output, const byteUser_t& user,
                progress_t* progress = nullptr);

/// Hands on the bytes of a regular file as they are appended to it, until the output is closed or a
/// stop signal comes. When the file was truncated, or another file has its name, the user's next
/// input begins, of the same name. False, with a message, if it cannot be read or followed.
bool followBlocks(const std::string& name, output_t& output, const byteUser_t& user);

/// What is done with the lines of an input, or of each member of an archive. Blank lines are left
/// out.
struct lineUser_t {
    std::function<void(const std::string& name)> begin;
    std::function<void(const line_t& line)> use; ///< only the first part of a line that is too long
};

/// The same, line by line.
bool readLines(const std::string& name, output_t& output, const lineUser_t& user);

constexpr int exitFailure = 1;
constexpr int exitUsage = 2;
constexpr int exitSignal = 128; // plus the signal's number

/// Ends a run: writes out what is left, prints a message if that fails, and returns the exit
/// status. `status` is that of what was done so far. It is not a failure if the reader of the
/// output went away. A file is complete unless not all inputs were read, a stop signal came or it
/// could not be written; then a message names what is kept of it.
int finish(output_t& output, int status, bool areInputsRead = true);

/// Prints `text` on standard output, and returns the exit status.
int print(const std::string& text);
