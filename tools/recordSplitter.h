// Finds the records in a line: the receive stamp, the text in front of a sentence, joined and cut
// sentences. Every byte of a line belongs to exactly one of its records.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "kalo/nmea/nmeaFormat.h"
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
    notARecord
};
constexpr std::size_t faultCount = 9;

/// The fixed text of a fault, as it stands in the output.
const char* faultText(fault_t fault);

/// One record. Its texts live as long as those of the line that it was found in, its sentence until
/// the next record.
struct record_t {
    std::string_view raw;      ///< all its bytes, stamp and prefix included, without the line end
    std::string_view received; ///< the stamp of its line
    std::string_view prefix;   ///< what stands in front of a sentence
    std::uint64_t line = 0;
    std::uint64_t offset = 0;                     ///< of `raw` in the input
    const kalo::nmeaFormat_t* sentence = nullptr; ///< null when malformed
    bool hasChecksum = false;
    fault_t fault = fault_t::none;
    unsigned stated = 0;   ///< with `checksumMismatch`
    unsigned computed = 0; ///< with `checksumMismatch`
};

struct recordOptions_t {
    bool strict = false;          ///< lines as they are: no stamp, no prefix, no joined sentences
    bool nmeaOnly = false;        ///< every line is taken for a sentence
    bool requireChecksum = false; ///< a sentence without a checksum is malformed
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
        std::size_t start; // of the sentence in it; `end` without one
        fault_t fault;     // known without framing it
    };

    void findPieces(std::size_t begin);
    void findStarts(std::size_t begin);
    void addSentence(std::size_t start, std::size_t matched, std::size_t end);
    std::size_t matchedLength(std::string_view text);
    bool frame(std::string_view text);
    bool carriesChecksum() const;
    void judge(record_t& record, std::string_view text);

    recordOptions_t m_options;
    line_t m_line;
    std::string m_received; // kept for the further parts of a line that is too long
    std::vector<std::size_t> m_starts;
    std::vector<piece_t> m_pieces;
    std::size_t m_nextPiece = 0;
    std::string m_sentence;    // the bytes handed to the library, line end included
    std::string_view m_framed; // the text that they were made of
    kalo::nmeaFormat_t m_format;
};
