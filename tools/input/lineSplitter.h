// Cuts the bytes of an input into lines, which tools/input/pieces.h cuts into records.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// One line, or a piece of a line that is too long. Its texts live until the next `append`.
struct line_t {
    std::string_view text;
    std::string_view end;     ///< the bytes of its line end, only when ends are kept
    std::uint64_t number = 0; ///< line ends before it, plus one
    std::uint64_t offset = 0; ///< of its first byte in the input
    bool tooLong = false;     ///< part of a line over `lineSplitter_t::maxLength`
    bool continued = false;   ///< not the first part of such a line
};

/// Where in `text`, at `from` or after it, the first line begins: after a LF, or after a CR that
/// neither CR nor LF follows. The empty lines within a run of CRs therefore belong to the line in
/// front of them. `from` must be above 0. `npos` if no line is known to begin.
std::size_t findLineStart(std::string_view text, std::size_t from);
/// The number of line ends in `text`, where both its beginning and its end begin a line.
std::uint64_t countLineEnds(std::string_view text);

/// Splits at LF, at CR, and at any run of CR followed by LF; each counts as one line end. Lines
/// that hold only blanks and tabs are skipped and counted. Memory is bounded and work is linear for
/// any input.
class lineSplitter_t {
public:
    static constexpr std::size_t maxLength = 65536;

    /// With `keepEnds`, each line comes with its line end, and therefore only when the line end is
    /// complete, which the byte after a CR decides. Without it, a CR ends its line at once.
    explicit lineSplitter_t(bool keepEnds);

    /// The bytes begin at this offset of the input, where a line begins, after so many line ends.
    /// Call it before the first `append`.
    void startAt(std::uint64_t offset, std::uint64_t lineEnds);

    void append(std::string_view data);
    /// No more input: what is left is the last line.
    void finish();
    /// The next line; false when more input is needed, or after `finish` at the end.
    bool next(line_t& line);
    /// The next line if it is plain: it begins with "$" or "!", and what follows is printable ASCII
    /// without blanks, quotes, "#", and further start characters. Most lines of most logs are
    /// plain, and one pass finds the end of such a line and that it is plain. Its `end` is its line
    /// end. False if the next line is not plain or not complete yet; call `next` then.
    bool nextPlain(line_t& line);

    std::uint64_t blankLines() const { return m_blankLines; }
    /// The offset in the input of what `append` gets next.
    std::uint64_t bytes() const { return m_base + m_buffer.size(); }
    std::uint64_t lineEnds() const { return m_lineEnds; }

private:
    std::size_t findEnd();
    bool passEnd();
    bool measureEnd(std::size_t& length);
    bool take(line_t& line, std::size_t length, std::size_t endLength);

    bool m_keepEnds;
    bool m_finished = false;
    std::string m_buffer;
    std::uint64_t m_base = 0;              // offset of the buffer in the input
    std::size_t m_begin = 0;               // of the current line in the buffer
    std::size_t m_scan = 0;                // no CR from m_begin to here
    std::size_t m_lf = 0;                  // no LF from m_begin to here
    std::size_t m_end = std::string::npos; // of the current line's text, once it is found
    std::size_t m_plain = 0;               // no byte that is not plain from m_begin to here
    std::uint64_t m_endRun = 0; // CRs already passed in the line end of a line that was handed out
    bool m_tooLong = false;     // the current line has been handed out in part
    std::uint64_t m_lineEnds = 0;
    std::uint64_t m_blankLines = 0;
};
