// Cuts a line into the pieces that become records, and finds what loggers and stations have written
// around them: stamps, names, tag blocks, envelopes, tails. Every byte of a line is in exactly one
// piece. tools/record/recordReader.h decodes the pieces.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tools/input/lineSplitter.h"
#include "tools/input/stamp.h"

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
    bool strict = false; ///< lines are read as they are: nothing may stand around a record, and
                         ///< records are not separated
    kind_t only = kind_t::none;   ///< every line is read as this kind
    bool requireChecksum = false; ///< a sentence without a checksum is malformed
};

/// What is remembered from one line of an input to the next.
struct splitState_t {
    bool inTableHeader =
        false; ///< behind the status line of a sourcetable, before its first record
    dateOrder_t order = dateOrder_t::unknown; ///< of dates such as 03/04/2026
};

bool operator==(const splitState_t& a, const splitState_t& b);

/// One piece. Its texts are parts of the line, or of the texts that `splitLine_t` owns.
struct piece_t {
    std::string_view raw;    ///< all its bytes, without the line end
    std::string_view prefix; ///< any other text in front of it
    std::string_view tags;   ///< the tag blocks in front of a sentence
    std::string_view text;   ///< the record itself: of a sentence up to its checksum
    std::string_view suffix; ///< what stands behind a sentence's envelope, or was added to it
    kind_t kind = kind_t::none;
    fault_t fault = fault_t::none;
    unsigned checksumDigits = 0; ///< of a sentence: how many digits its checksum has, or 0
    unsigned stated = 0;         ///< with `checksumMismatch`
    unsigned computed = 0;       ///< with `checksumMismatch`
    bool hasStampBehind = false;
    stamp_t stampBehind; ///< used if there is no stamp in front of the line's first record or in a
                         ///< tag block
};

/// A line that has been cut.
struct splitLine_t {
    bool hasStamp = false;
    stamp_t stamp; ///< in front of its first record; used for all records of the line
    std::vector<piece_t> pieces;
    std::string texts; ///< memory for texts that are not parts of the line
};

/// Cuts `line` into `out`, and reuses the memory of `out`.
void splitLine(const line_t& line, const splitOptions_t& options, splitState_t& state,
               splitLine_t& out);
