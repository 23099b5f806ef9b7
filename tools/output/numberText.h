// Numbers as text.
#pragma once

#include <cstdint>

/// Enough for any of these.
constexpr std::size_t longestNumber = 32;

// Each writes at `at`, where there must be room for `longestNumber` characters, and returns the
// end.

char* writeInteger(char* at, std::uint64_t value);
char* writeInteger(char* at, int value);
/// `value` with at least so many digits.
char* writePadded(char* at, unsigned value, unsigned digits);

/// The shortest text that reads back as the same number; `value` must be finite.
char* writeShortest(char* at, double value);
char* writeShortest(char* at, float value);

/// Up to 15 significant digits, as "%.15g" writes them; `value` must be finite.
char* writeFifteenDigits(char* at, double value);
