// The help that the tool prints, made from the table of verbs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/command/verbs.h"

/// Text in lines of up to 79 bytes, each but the first behind `indent` blanks.
std::string wrapped(std::string_view text, std::size_t indent);

/// What an option does, and, if they are few, the words that its value may be.
std::string helpOf(const option_t& option);

/// The help of a verb.
std::string helpOf(const verb_t& verb);

/// The help of the program.
std::string helpOf(const std::vector<command_t>& commands);

/// "kalo decode [OPTION...] [FILE...]".
std::string usageOf(const verb_t& verb);
