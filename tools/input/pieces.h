// Cuts a line into the pieces that become records: the receive stamp, the text in front of a
// sentence, joined and damaged sentences, and records of other kinds. Every byte of a line is in
// exactly one piece. tools/record/recordReader.h decodes the pieces.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "tools/input/lineSplitter.h"

/// Kinds of records.
enum class kind_t {
    none,     ///< malformed
    sentence, ///< NMEA 0183
    motion,   ///< TSS1
    tracking, ///< ATS
    table     ///< a line of a sourcetable
};

/// Why a record is malformed.
enum class fault_t {
    none,
    noStartCharacter,
    noLineEnd,
    badChecksumDigits,
    checksumMismatch,
    noChecksum,
    cut,
    lineTooLong,
    notARecord,
    nothingDecodes
};
constexpr std::size_t faultCount = 10;

/// The fixed text of a fault, as it stands in the output.
const char* faultText(fault_t fault);

struct splitOptions_t {
    bool strict = false;          ///< lines as they are: no stamp, no prefix, no joined records
    kind_t only = kind_t::none;   ///< every line is taken for this kind
    bool requireChecksum = false; ///< a sentence without a checksum is malformed
};

/// One piece. Its texts are parts of the line and live as long.
struct piece_t {
    std::string_view raw;    ///< all its bytes, without the line end
    std::string_view prefix; ///< what stands in front of a sentence
    std::string_view text;   ///< the record itself: of a sentence up to its checksum
    kind_t kind = kind_t::none;
    fault_t fault = fault_t::none;
    unsigned checksumDigits = 0; ///< of a sentence: how many digits its checksum has, or 0
    unsigned stated = 0;         ///< with `checksumMismatch`
    unsigned computed = 0;       ///< with `checksumMismatch`
};

/// A line that has been cut.
struct splitLine_t {
    std::string_view received; ///< the stamp, empty without one
    std::vector<piece_t> pieces;
};

/// Cuts `line` into `out`, whose memory is used again. `inTableHeader` is what one line tells the
/// next: it stands behind the status line of a sourcetable and before its first record.
void splitLine(const line_t& line, const splitOptions_t& options, bool& inTableHeader,
               splitLine_t& out);
