// Text around a record that does not belong to it: marks, names, stamps, envelopes, printed line
// ends, and what stations add after a sentence.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "tools/input/stamp.h"

/// The length of what is dropped at the start of a line: a byte order mark, and the header of a
/// datagram.
std::size_t markLength(std::string_view line);

/// `text` without blanks and punctuation at both ends.
std::string_view withoutDecoration(std::string_view text);

/// The text in front of a record that is not a sentence.
struct lead_t {
    bool hasStamp = false;
    stamp_t stamp;
    std::string_view name;
    std::size_t length = 0; ///< the record begins after it
};

/// A stamp at the start of `text`, or behind one name.
lead_t leadOf(std::string_view text, const stampRules_t& rules);

/// The length of the blanks and printed line ends ("\r", "\x0d", "<CR>") at the start of `text`.
std::size_t printedEndLength(std::string_view text);

/// The character that closes what `c` opens around a sentence; NUL if `c` opens nothing.
char closingOf(char c);

/// Numbers and words after a checksum, such as ",r003669987,1152921693".
struct tail_t {
    bool hasStamp = false;
    stamp_t stamp;
    std::string words; ///< all items but the stamp, with commas between; some may be empty
};

/// Reads a tail; it must be the whole of `text`.
bool readTail(std::string_view text, tail_t& out);
