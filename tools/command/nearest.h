// The name that somebody may have meant.
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The candidate that takes the fewest changes of a letter, whatever the case; empty when all are
/// far from `word`.
std::string nearest(std::string_view word, const std::vector<std::string_view>& candidates);

/// "; did you mean X?" for the nearest candidate, or nothing.
std::string suggestion(std::string_view word, const std::vector<std::string_view>& candidates);
