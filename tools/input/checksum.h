// The checksum of a piece of a line.
#pragma once

#include <cstddef>
#include <string_view>

/// Where the checksum of a sentence stands, and whether it is right.
struct checksum_t {
    enum state_t {
        none,      ///< there is no "*" in the piece
        matching,  ///< the digits are right for the bytes in front of them
        different, ///< the digits at the end are not right
        unreadable ///< a "*" without digits that could be a checksum
    };

    state_t state = none;
    std::size_t end = 0;   ///< the end of its digits in the piece, if there are any
    unsigned digits = 0;   ///< how many: 1 or 2
    unsigned stated = 0;   ///< with `different`
    unsigned computed = 0; ///< with `different`
};

/// How many hexadecimal digits stand at `at`: 0, 1, or 2 for two and more.
unsigned hexDigitsAt(std::string_view text, std::size_t at);

/// The checksum at the end of a sentence, which begins with its start character. A single digit
/// counts as two: some devices leave out the leading 0.
checksum_t checksumAtEnd(std::string_view sentence);

/// Finds the checksum of a piece of a line: the digits at its end (blanks after them are ignored)
/// if they match; otherwise the first digits that match; otherwise the digits at the end.
checksum_t findChecksum(std::string_view piece);
