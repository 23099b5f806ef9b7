// The checksum of a piece of a line.
#pragma once

#include <cstddef>
#include <string_view>

/// Where the checksum of a sentence stands, and whether it is right.
struct checksum_t {
    enum state_t {
        none,      ///< there is no "*" in the piece
        matching,  ///< the digits are those of what stands in front of them
        different, ///< the digits at the end are not
        unreadable ///< a "*", and no digits that could count
    };

    state_t state = none;
    std::size_t end = 0;   ///< of its digits in the piece, when there are digits that count
    unsigned digits = 0;   ///< how many: 1 or 2
    unsigned stated = 0;   ///< with `different`
    unsigned computed = 0; ///< with `different`
};

/// How many hexadecimal digits stand at `at`: 0, 1, or 2 for two and more.
unsigned hexDigitsAt(std::string_view text, std::size_t at);

/// The checksum at the end of a sentence, which begins with its start character. One digit with no
/// other behind it stands for two: some devices leave out the leading 0.
checksum_t checksumAtEnd(std::string_view sentence);

/// Finds the checksum of a piece of a line: digits at its end if they match, blanks behind them
/// left aside; else the first that match; else those at the end.
checksum_t findChecksum(std::string_view piece);
