// Numbers as text.
#pragma once

#include <cstddef>
#include <cstdint>

/// Enough for any of these.
constexpr std::size_t longestNumber = 32;

// Each writes at `at`, where there must be room for `longestNumber` characters, and returns the
// end. Bytes after the end may be overwritten. Numbers must be finite.

char* writeInteger(char* at, std::uint64_t value);
char* writeInteger(char* at, int value);
/// At least two digits, and at least four.
char* writePair(char* at, unsigned value);
char* writeYear(char* at, unsigned value);

/// The shortest text that reads back as the same number.
char* writeShortest(char* at, double value);
char* writeShortest(char* at, float value);

/// Up to 15 significant digits, as "%.15g" writes them.
char* writeFifteenDigits(char* at, double value);

// The same, using only the formatting library, which is slower; for comparison.
char* writeShortestPlainly(char* at, double value);
char* writeFifteenDigitsPlainly(char* at, double value);
