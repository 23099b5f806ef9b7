// The scripts with which shells complete the command line, made from the table of verbs.
#pragma once

#include <string>
#include <vector>

#include "tools/command/verbs.h"

enum class shell_t { bash, zsh, fish };

/// The script for a shell. It completes commands, options, values that are one of a list, and names
/// of files and folders.
std::string completionScript(shell_t shell, const std::vector<command_t>& commands);
