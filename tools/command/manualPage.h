// The manual pages, made from the table of verbs.
#pragma once

#include <string>
#include <vector>

#include "tools/command/verbs.h"

/// The source of the page of the program, `kalo.1`, in the macros of man(7).
std::string manualPage(const std::vector<command_t>& commands);

/// The source of the page of a verb, such as `kalo-decode.1`.
std::string manualPage(const verb_t& verb);
