// What the program says on standard error.
#pragma once

#include <string>
#include <string_view>

/// Writes `text` and a line feed to standard error. Nothing that goes wrong there has an effect:
/// a closed or full standard error must not cost a record.
void say(std::string_view text) noexcept;

/// "kalo: NAME: REASON" on standard error, as one line: see `printable`.
void complain(std::string_view name, std::string_view reason);

/// `text` for a message: a byte that is no printable ASCII becomes \xHH, and what goes beyond
/// `printableLength` bytes becomes "...".
std::string printable(std::string_view text);
constexpr std::size_t printableLength = 200;
