#include "tools/input/lineSplitter.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t npos = std::string::npos;

// Plain bytes lie between these two.
constexpr char belowPlain = '$';
constexpr char abovePlain = '\x7F';

bool isPlain(char c) { return c > belowPlain && c < abovePlain; }

// Whether one of the eight bytes at `text` is not plain. Bytes from 0x80 on have their highest bit
// set; for the others, the additions set it.
bool holdsOther(const char* text) {
    constexpr std::uint64_t ones = 0x0101010101010101;
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, text, sizeof bytes);
    const std::uint64_t low = bytes & 0x7F * ones;
    const std::uint64_t isAbove = bytes | (low + ones * (0x80 - abovePlain));
    const std::uint64_t isNotBelow = low + ones * (0x7F - belowPlain);
    return ((isAbove | ~isNotBelow) & 0x80 * ones) != 0;
}

// Whether a line begins at `at`, which is above 0.
bool isLineStart(std::string_view text, std::size_t at) {
    return text[at - 1] == '\n' ||
           (text[at - 1] == '\r' && at < text.size() && text[at] != '\r' && text[at] != '\n');
}

} // namespace

std::size_t findLineStart(std::string_view text, std::size_t from) {
    while (from <= text.size() && !isLineStart(text, from)) {
        from = std::min(text.find_first_of("\r\n", from), text.size()) + 1;
    }
    return from <= text.size() ? from : npos;
}

// Nearly all CRs of most logs are followed by LF. The loop over short blocks, with counters of one
// byte, is one that compilers make vector instructions of.
std::uint64_t countLineEnds(std::string_view text) {
    constexpr std::size_t blockSize = 128;
    std::uint64_t lineFeeds = 0;
    bool areAllFollowed = text.empty() || text.back() != '\r';
    for (std::size_t begin = 0; begin < text.size(); begin += blockSize) {
        const char* const block = text.data() + begin;
        const std::size_t size = std::min(blockSize, text.size() - begin);
        const std::size_t pairs = std::min(size, text.size() - begin - 1);
        std::uint8_t feeds = 0;
        std::uint8_t others = 0;
        for (std::size_t i = 0; i < size; ++i) {
            feeds = static_cast<std::uint8_t>(feeds + (block[i] == '\n'));
        }
        for (std::size_t i = 0; i < pairs; ++i) {
            others |= static_cast<std::uint8_t>((block[i] == '\r') & (block[i + 1] != '\n'));
        }
        lineFeeds += feeds;
        areAllFollowed = areAllFollowed && others == 0;
    }
    if (areAllFollowed) {
        return lineFeeds;
    }
    std::uint64_t count = 0;
    std::uint64_t run = 0; // of CRs
    for (const char c : text) {
        count += c == '\n' ? 1 : c == '\r' ? 0 : run;
        run = c == '\r' ? run + 1 : 0;
    }
    return count + run;
}

lineSplitter_t::lineSplitter_t(bool keepEnds) : m_keepEnds(keepEnds) {}

void lineSplitter_t::startAt(std::uint64_t offset, std::uint64_t lineEnds) {
    m_base = offset;
    m_lineEnds = lineEnds;
}

void lineSplitter_t::append(std::string_view data) {
    m_buffer.erase(0, m_begin);
    m_base += m_begin;
    m_scan = std::max(m_scan, m_begin) - m_begin;
    m_lf = std::max(m_lf, m_begin) - m_begin;
    m_plain = std::max(m_plain, m_begin) - m_begin;
    m_end = m_end == npos ? npos : m_end - m_begin;
    m_begin = 0;
    m_buffer.append(data);
}

void lineSplitter_t::finish() { m_finished = true; }

bool lineSplitter_t::next(line_t& line) {
    for (;;) {
        if (m_endRun > 0 && !passEnd()) {
            return false;
        }
        if (m_end == npos) {
            m_end = findEnd();
        }
        const std::size_t length = std::min(m_end, m_buffer.size()) - m_begin;
        if (length > maxLength) {
            const bool continued = m_tooLong;
            m_tooLong = true;
            take(line, maxLength, 0);
            line.continued = continued;
            m_begin += maxLength;
            return true;
        }
        if (m_end == npos) {
            if (!m_finished || length == 0) {
                return false;
            }
            m_end = m_buffer.size();
        }
        std::size_t endLength = 0;
        if (m_keepEnds && !measureEnd(endLength)) {
            return false;
        }
        const bool taken = take(line, length, endLength);
        m_begin = m_end;
        if (m_begin < m_buffer.size()) {
            if (m_buffer[m_begin] == '\n') {
                ++m_lineEnds;
            } else {
                m_endRun = 1;
            }
            ++m_begin;
        }
        m_end = npos;
        m_tooLong = false;
        if (taken) {
            return true;
        }
    }
}

bool lineSplitter_t::nextPlain(line_t& line) {
    if (m_keepEnds || m_tooLong || (m_endRun > 0 && !passEnd())) {
        return false;
    }
    const char* const data = m_buffer.data();
    const std::size_t size = m_buffer.size();
    if (m_begin == size || (data[m_begin] != '$' && data[m_begin] != '!')) {
        return false;
    }
    std::size_t at = std::max(m_plain, m_begin + 1);
    while (at + sizeof(std::uint64_t) <= size && !holdsOther(data + at)) {
        at += sizeof(std::uint64_t);
    }
    while (at < size && isPlain(data[at])) {
        ++at;
    }
    m_plain = at;
    const std::size_t endLength =
        std::string_view(data + at, size - at).substr(0, 2) == "\r\n" ? 2 : 1;
    if (at + endLength > size || data[at + endLength - 1] != '\n' || at - m_begin > maxLength) {
        return false;
    }
    line.text = {data + m_begin, at - m_begin};
    line.end = {data + at, endLength};
    line.number = ++m_lineEnds;
    line.offset = m_base + m_begin;
    line.tooLong = false;
    line.continued = false;
    m_begin = at + endLength;
    return true;
}

// The position of the current line's end. The position of the next LF is kept, so that a file that
// only has CRs is not searched to its end for each line.
std::size_t lineSplitter_t::findEnd() {
    m_scan = std::max(m_scan, m_begin);
    m_lf = std::max(m_lf, m_begin);
    if (m_lf < m_buffer.size() && m_buffer[m_lf] != '\n') {
        m_lf = std::min(m_buffer.find('\n', m_lf), m_buffer.size());
    }
    const std::size_t cr = std::string_view(m_buffer).substr(0, m_lf).find('\r', m_scan);
    m_scan = std::min(cr, m_lf);
    return m_scan < m_buffer.size() ? m_scan : npos;
}

// Passes the rest of a line end that began with CR; false if it depends on more input.
bool lineSplitter_t::passEnd() {
    while (m_begin < m_buffer.size() && m_buffer[m_begin] == '\r') {
        ++m_begin;
        ++m_endRun;
    }
    if (m_begin == m_buffer.size() && !m_finished) {
        return false;
    }
    if (m_begin < m_buffer.size() && m_buffer[m_begin] == '\n') {
        ++m_begin;
        ++m_lineEnds;
    } else {
        // Without a LF behind them each CR is a line end, with a blank line between two of them.
        m_lineEnds += m_endRun;
        m_blankLines += m_endRun - 1;
    }
    m_endRun = 0;
    return true;
}

// The length of the current line's end; false if it depends on more input. A run of CRs beyond the
// limit of memory counts as one CR, whatever follows it.
bool lineSplitter_t::measureEnd(std::size_t& length) {
    std::size_t behind = std::max(m_scan, m_end);
    const std::size_t limit = m_begin + maxLength;
    while (behind < m_buffer.size() && behind <= limit && m_buffer[behind] == '\r') {
        ++behind;
    }
    m_scan = behind;
    if (behind <= limit && behind < m_buffer.size() && m_buffer[behind] == '\n') {
        length = behind + 1 - m_end;
        return true;
    }
    length = std::min<std::size_t>(behind - m_end, 1);
    return behind < m_buffer.size() || m_finished || behind > limit;
}

// Hands out the text at the start of the current line, unless there is none or it is blank.
bool lineSplitter_t::take(line_t& line, std::size_t length, std::size_t endLength) {
    const std::string_view buffer = m_buffer;
    const std::string_view text = buffer.substr(m_begin, length);
    if (m_tooLong ? text.empty() : text.find_first_not_of(" \t") == npos) {
        m_blankLines += m_tooLong ? 0 : 1;
        return false;
    }
    line = {text,           buffer.substr(m_begin + length, endLength),
            m_lineEnds + 1, m_base + m_begin,
            m_tooLong,      m_tooLong};
    return true;
}
