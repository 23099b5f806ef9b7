// UTF-8.
#pragma once

#include <cstddef>
#include <string_view>

/// The length of the UTF-8 sequence of several bytes at the start of `text`; 0 when it is not
/// valid.
std::size_t utf8Length(std::string_view text);
