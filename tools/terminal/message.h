// Messages on standard error.
#pragma once

#include <string>
#include <string_view>

/// Writes `text` and a line feed to standard error. Errors are ignored: no record may be lost
/// because standard error is closed or full.
void say(std::string_view text) noexcept;

/// Shows `text`, which is printable ASCII, in the current line of the terminal at standard error,
/// instead of what was shown before; empty: shows nothing. The next message erases it.
void show(std::string_view text) noexcept;

/// "kalo: TEXT" on standard error, for a fault.
void sayFault(const std::string& text);

/// "kalo: NAME: REASON" on standard error, as one line: see `printable`.
void complain(std::string_view name, std::string_view reason);

/// `text` for a message: a byte that is not printable ASCII becomes \xHH, and everything after
/// `printableLength` bytes becomes "...".
std::string printable(std::string_view text);
constexpr std::size_t printableLength = 200;

/// The width of the terminal at a descriptor; 0 if it is not a terminal.
std::size_t terminalWidth(int descriptor);
