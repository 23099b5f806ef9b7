#include "tools/record/range.h"

#include <algorithm>

namespace {

constexpr std::size_t blockSize = 262144;
constexpr std::size_t lineBlockSize = 4096;

// Whether the day of a record is the one that it states itself.
bool isDatedByItself(const record_t& record) {
    return record.instant &&
           (record.instant->rule == dayRule_t::own || record.instant->rule == dayRule_t::rollover);
}

// Reads the lines of a range, and returns whether one of them holds a record that dated itself.
bool readLines(placedBytes_t& input, const byteRange_t& range, recordReader_t& reader) {
    rangeBytes_t bytes(input, range);
    bool isDated = false;
    record_t record;
    const auto takeRecords = [&] {
        while (reader.next(record)) {
            isDated = isDated || isDatedByItself(record);
        }
    };
    for (std::string_view block = bytes.read(); !block.empty(); block = bytes.read()) {
        reader.feed(block);
        takeRecords();
    }
    reader.pause();
    takeRecords();
    return isDated;
}

} // namespace

std::uint64_t lineStartAt(placedBytes_t& input, std::uint64_t offset) {
    if (offset == 0) {
        return 0;
    }
    char block[lineBlockSize];
    // The byte in front of a line, and the next one, tell that it begins.
    for (std::uint64_t from = offset - 1;; from += lineBlockSize - 1) {
        const std::size_t count = input.readAt(from, block, lineBlockSize);
        const std::size_t start = findLineStart({block, count}, 1);
        if (start != std::string_view::npos) {
            return from + start;
        }
        if (count < lineBlockSize) {
            return input.size();
        }
    }
}

lineRange_t linesOf(placedBytes_t& input, const byteRange_t& range) {
    const bool isToEnd = range.end >= input.size();
    return {lineStartAt(input, range.begin), isToEnd ? input.size() : lineStartAt(input, range.end),
            isToEnd && (range.begin < input.size() || input.size() == 0)};
}

readerState_t stateAt(placedBytes_t& input, std::uint64_t offset, const readOptions_t& options,
                      const warmUp_t& warmUp) {
    if (offset == 0) {
        return recordReader_t(options).state();
    }
    const bool isDayGiven = options.dating.date || options.dating.begin;
    readOptions_t without = options;
    without.dating.date.reset();
    without.dating.begin.reset();
    for (std::uint64_t size = warmUp.size;; size *= warmUp.growth) {
        const std::uint64_t begin = offset > size ? lineStartAt(input, offset - size) : 0;
        recordReader_t reader(without);
        if (begin > 0) {
            recordReader_t first(without);
            readLines(input, {0, std::min(warmUp.size, begin)}, first);
            readerState_t start;
            start.offset = begin;
            start.split = first.state().split;
            reader.startFrom(start);
        }
        const bool isDated = readLines(input, {begin, offset}, reader);
        if (begin > 0 && ((!isDated && !isDayGiven) || reader.hasOpenStamp())) {
            continue;
        }
        readerState_t state = reader.state();
        state.lineEnds.reset();
        if (isDayGiven && !isDated) {
            state.dating = dating_t(options.dating).state();
        }
        return state;
    }
}

rangeBytes_t::rangeBytes_t(placedBytes_t& input, const byteRange_t& range)
    : m_input(input), m_lines(linesOf(input, range)), m_next(m_lines.begin),
      m_block(static_cast<std::size_t>(std::min<std::uint64_t>(size(), blockSize)), '\0') {}

std::string_view rangeBytes_t::read() {
    const std::uint64_t left = m_lines.end - m_next;
    const std::size_t count =
        m_input.readAt(m_next, m_block.data(),
                       static_cast<std::size_t>(std::min<std::uint64_t>(left, m_block.size())));
    m_next += count;
    return {m_block.data(), count};
}
