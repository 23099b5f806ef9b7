// What the program says on standard error, and how it ends.
#pragma once

#include <string>

#include "tools/output.h"

constexpr int exitFailure = 1;
constexpr int exitUsage = 2;
constexpr int exitSignal = 128; // plus the signal's number

/// "kalo: FILE: reason" on standard error.
void complain(const std::string& name, const std::string& reason);

/// 0, or `exitFailure` with a message when `output` could not take everything. A reader that went
/// away is no failure.
int exitStatus(const output_t& output);
