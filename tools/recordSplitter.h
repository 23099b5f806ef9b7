// Finds the records in a line: the receive stamp, the text in front of a sentence, joined and cut
// sentences, and what is no sentence. Every byte of a line belongs to exactly one of its records.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "kalo/nmea/nmeaFormat.h"
#include "kalo/ntrip/ntripRecordType.h"
#include "kalo/ntrip/ntripStreamDecoder.h"
#include "kalo/sensors/atsAsciiMsg.h"
#include "kalo/sensors/tss1Msg.h"
#include "tools/lineSplitter.h"

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

enum class recordKind_t {
    none,     ///< malformed
    sentence, ///< NMEA 0183
    motion,   ///< TSS1
    tracking, ///< ATS
    table     ///< a line of a sourcetable
};

/// One record. Its texts live as long as those of the line that it was found in, what its kind has
/// decoded until the next record.
struct record_t {
    std::string_view raw;      ///< all its bytes, stamp and prefix included, without the line end
    std::string_view received; ///< the stamp of its line
    std::string_view prefix;   ///< what stands in front of a sentence
    std::string_view text;     ///< `raw` without stamp and prefix
    std::uint64_t line = 0;
    std::uint64_t offset = 0; ///< of `raw` in the input
    recordKind_t kind = recordKind_t::none;
    const kalo::nmeaFormat_t* sentence = nullptr; ///< of its kind, as are the next three
    const kalo::tss1Msg_t* motion = nullptr;
    const kalo::atsAsciiMsg_t* tracking = nullptr;
    const kalo::ntripStreamDecoder_t* table = nullptr;
    kalo::ntripRecordType_t tableLine = kalo::ntripRecordUnknown;
    bool hasChecksum = false;      ///< of a sentence
    fault_t fault = fault_t::none; ///< a tracking record keeps its kind with a wrong checksum
    unsigned stated = 0;           ///< with `checksumMismatch`
    unsigned computed = 0;         ///< with `checksumMismatch`
};

struct recordOptions_t {
    bool strict = false; ///< lines as they are: no stamp, no prefix, no joined sentences
    recordKind_t only = recordKind_t::none; ///< every line is taken for this kind
    bool requireChecksum = false;           ///< a sentence without a checksum is malformed
};

class recordSplitter_t {
public:
    explicit recordSplitter_t(const recordOptions_t& options);

    /// Goes on to another line, which must live while its records are used.
    void start(const line_t& line);
    /// The next record of the line; false behind the last one.
    bool next(record_t& record);

private:
    // A piece begins where the one before it ended.
    struct piece_t {
        std::size_t end;   // behind its last byte in the line
        std::size_t start; // behind the prefix
        recordKind_t kind;
        fault_t fault; // known without decoding it
    };

    void findPieces(std::size_t begin);
    void findStarts(std::size_t begin);
    void addSentence(std::size_t start, std::size_t matched, std::size_t end);
    void addCut(std::size_t start, std::size_t end);
    recordKind_t kindOf(std::string_view text);
    bool isTableLine(std::string_view text);
    std::size_t matchedLength(std::string_view text);
    void complete(std::string_view text);
    bool frame(std::string_view text);
    bool carriesChecksum() const;
    void decode(record_t& record);
    void judgeSentence(record_t& record);
    void judgeTracking(record_t& record);

    recordOptions_t m_options;
    line_t m_line;
    std::string m_received; // kept for the further parts of a line that is too long
    std::vector<std::size_t> m_starts;
    std::vector<piece_t> m_pieces;
    std::size_t m_nextPiece = 0;
    bool m_inTableHeader = false; // between the status line of a sourcetable and its first record
    std::string m_completed;      // the bytes handed to the library, line end included
    std::string_view m_framed;    // the text that `m_format` was made of
    kalo::nmeaFormat_t m_format;
    kalo::tss1Msg_t m_motion;
    kalo::atsAsciiMsg_t m_tracking;
    kalo::ntripStreamDecoder_t m_table;
};
