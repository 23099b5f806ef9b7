// The commands (here: verbs) of the program, with their options: the table from which arguments are
// read, and from which helps, manual pages and completions are made.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/command/arguments.h"

/// A verb, and the function that runs it with its operands and returns the exit status.
struct command_t {
    verb_t verb;
    std::function<int(const std::vector<std::string>& operands)> run;
    bool readsInput = false; ///< from standard input if there are no operands
    /// Gets all arguments as they were given, before they are read.
    std::function<void(const std::vector<std::string>& arguments)> hear = {};
};

std::vector<command_t> allCommands();

std::vector<std::string> namesOf(const std::vector<command_t>& commands);

/// Throws `usageError_t`.
const command_t& commandNamed(const std::string& name, const std::vector<command_t>& commands);
