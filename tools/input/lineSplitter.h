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

/// Splits at LF, CR, and any run of CR followed by LF, each one line end. Lines of blanks and tabs
/// alone are passed over and counted. Memory stays bounded and work linear, whatever the input is.
class lineSplitter_t {
public:
    static constexpr std::size_t maxLength = 65536;

    /// With `keepEnds` each line comes with its end, and so not before the end is complete: the
    /// byte behind a CR decides. Without, a CR ends its line at once.
    explicit lineSplitter_t(bool keepEnds);

    void append(std::string_view data);
    /// No more input: what is left is the last line.
    void finish();
    /// The next line; false when more input is needed, or after `finish` at the end.
    bool next(line_t& line);
    /// The next line if it is plain: it begins with "$" or "!", and what follows is printable ASCII
    /// without blanks, quotes, "#", and further start characters. Most lines of most logs are;
    /// such a line is found and known to be plain in one pass. Its `end` is its line end. False
    /// when the next line is another, or not complete yet: then `next` goes on.
    bool nextPlain(line_t& line);

    std::uint64_t blankLines() const { return m_blankLines; }
    /// Of the input so far.
    std::uint64_t bytes() const { return m_base + m_buffer.size(); }

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
    std::uint64_t m_endRun = 0;            // CRs gone by of the end of a line already handed out
    bool m_tooLong = false;                // the current line has been handed out in part
    std::uint64_t m_lineEnds = 0;
    std::uint64_t m_blankLines = 0;
};
