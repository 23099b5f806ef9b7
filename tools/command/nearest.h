// Suggests the name that a misspelt word may stand for.
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The candidate that differs from `word` in the fewest letters, in any case; empty if none is
/// near.
std::string nearest(std::string_view word, const std::vector<std::string_view>& candidates);

/// "; did you mean X?" for the nearest candidate, or nothing.
std::string suggestion(std::string_view word, const std::vector<std::string_view>& candidates);
