// The time of reception that loggers put in front of a line.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

/// The length of the stamp at the start of `line`, without the blank, tab or comma that must follow
/// it; 0 without a stamp.
std::size_t stampLength(std::string_view line);

/// The Unix time of a text that is a stamp and nothing else; without a zone it is taken as UTC.
/// None for any other text.
std::optional<double> stampTime(std::string_view text);
