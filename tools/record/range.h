// Ranges of the bytes of an input, which are decoded one by one and give the same records as the
// whole.
#pragma once

#include <cstdint>
#include <limits>
#include <string>

#include "tools/input/bytes.h"
#include "tools/record/recordReader.h"

/// The lines that begin from `begin` on and before `end`. So each line belongs to one of several
/// ranges that follow one another, wherever they were cut.
struct byteRange_t {
    std::uint64_t begin = 0;
    std::uint64_t end = std::numeric_limits<std::uint64_t>::max(); ///< this one: the input's end
};

/// The bytes of the lines of a range.
struct lineRange_t {
    std::uint64_t begin = 0; ///< of the first line
    std::uint64_t end = 0;   ///< behind the last line
    bool isLast = false;     ///< whether the input ends with them: then a reader is to `finish`,
                             ///< otherwise to `pause`
};

lineRange_t linesOf(placedBytes_t& input, const byteRange_t& range);

/// The offset of the first line that begins at `offset` or after it; the size of the input if there
/// is none.
std::uint64_t lineStartAt(placedBytes_t& input, std::uint64_t offset);

/// How much is read in front of a line to find the state of a reader there.
struct warmUp_t {
    std::uint64_t size = 65536; ///< bytes
    std::uint64_t growth = 8;   ///< so many times more if it does not tell what is needed
};

/// The state that a reader has at `offset`, where a line begins, if it reads the input from its
/// start, as far as the lines in front of `offset` tell it: so many as `warmUp` says, then so many
/// times more, until a record dated itself and the order of day and month is known where it is
/// needed, at most from the start of the input on. For what a log tells only once, such as the
/// order of day and month, its first bytes are read, too. A date in `options.dating` is that of
/// `offset`, and counts if none of the first lines read dated itself; no more lines are then read.
/// How many lines are in front is known only for offset 0.
readerState_t stateAt(placedBytes_t& input, std::uint64_t offset, const readOptions_t& options,
                      const warmUp_t& warmUp = {});

/// The bytes of the lines of a range, in blocks.
class rangeBytes_t : public bytes_t {
public:
    /// `input` must outlive the object.
    rangeBytes_t(placedBytes_t& input, const byteRange_t& range);

    /// Where its first line begins.
    std::uint64_t begin() const { return m_lines.begin; }
    /// Of its lines together.
    std::uint64_t size() const { return m_lines.end - m_lines.begin; }
    /// Whether the input ends with this range.
    bool isLast() const { return m_lines.isLast; }

    std::string_view read() override;
    std::string fault() const override { return m_input.fault(); }

private:
    placedBytes_t& m_input;
    lineRange_t m_lines;
    std::uint64_t m_next;
    std::string m_block;
};
