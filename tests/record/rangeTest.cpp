// The records of ranges, one after another, are those of the whole input, wherever it is cut.
#include <cstring>
#include <random>

#include "tests/record/logs.h"
#include "tools/analysis/counts.h"
#include "tools/output/jsonWriter.h"
#include "tools/record/range.h"

namespace {

class text_t : public placedBytes_t {
public:
    explicit text_t(std::string_view text) : m_text(text) {}

    std::uint64_t size() const override { return m_text.size(); }
    std::size_t readAt(std::uint64_t offset, char* out, std::size_t size) override {
        const std::string_view part = m_text.substr(std::min(offset, this->size()), size);
        std::memcpy(out, part.data(), part.size());
        m_readBytes += part.size();
        return part.size();
    }
    std::string fault() const override { return {}; }
    std::uint64_t readBytes() const { return m_readBytes; }

private:
    std::string_view m_text;
    std::uint64_t m_readBytes = 0;
};

// The records as JSON, and the counts.
struct decoded_t {
    std::string json;
    counts_t counts;
};

// Reads on from `start`.
void decode(bytes_t& bytes, const readerState_t& start, bool isLast, const readOptions_t& options,
            decoded_t& out) {
    recordReader_t reader(options);
    reader.startFrom(start);
    valueOptions_t values;
    values.explain = true;
    values.raw = true;
    buffer_t json;
    jsonWriter_t writer(json, values);
    writer.setSource("log");
    record_t record;
    scratch_t scratch;
    const auto takeRecords = [&] {
        while (reader.next(record)) {
            out.counts.add(record);
            writer.write(record, scratch);
        }
    };
    for (std::string_view block = bytes.read(); !block.empty(); block = bytes.read()) {
        reader.feed(block);
        takeRecords();
    }
    if (isLast) {
        reader.finish();
    } else {
        reader.pause();
    }
    takeRecords();
    out.counts.add(reader);
    out.json += json.text();
}

decoded_t decodeRanges(const std::string& text, const std::vector<std::uint64_t>& cuts,
                       const readOptions_t& options) {
    decoded_t out;
    text_t input(text);
    byteRange_t range;
    for (std::size_t i = 0; i <= cuts.size(); ++i) {
        range.end = i < cuts.size() ? cuts[i] : byteRange_t().end;
        rangeBytes_t bytes(input, range);
        readerState_t start = stateAt(input, bytes.begin(), options);
        start.lineEnds.reset(); // so that the lines compare
        decode(bytes, start, bytes.isLast(), options, out);
        range.begin = range.end;
    }
    return out;
}

// The first line in which two outputs differ, as a message.
std::string difference(std::string_view a, std::string_view b) {
    const std::size_t size = std::min(a.size(), b.size());
    const std::size_t at = static_cast<std::size_t>(
        std::mismatch(a.begin(), a.begin() + static_cast<std::ptrdiff_t>(size), b.begin()).first -
        a.begin());
    if (at == a.size() && at == b.size()) {
        return "";
    }
    const auto lineAt = [at](std::string_view text) {
        const std::size_t end = at > 0 ? text.rfind('\n', at - 1) : std::string_view::npos;
        const std::size_t begin = end == std::string_view::npos ? 0 : end + 1;
        return std::string(text.substr(begin, text.find('\n', begin) - begin));
    };
    return lineAt(a) + "\nis in the whole, but in the ranges\n" + lineAt(b);
}

void checkCuts(const log_t& log, unsigned parts, const readOptions_t& options = {},
               bool comparesCounts = true) {
    const decoded_t whole = decodeRanges(log.text, {}, options);
    for (unsigned count = 2; count <= parts; ++count) {
        std::vector<std::uint64_t> cuts;
        for (unsigned i = 1; i < count; ++i) {
            cuts.push_back(log.text.size() * i / count);
        }
        const decoded_t ranges = decodeRanges(log.text, cuts, options);
        ASSERT_EQ(difference(whole.json, ranges.json), "") << log.name << " in " << count;
        if (comparesCounts) {
            ASSERT_EQ(whole.counts.text(), ranges.counts.text()) << log.name << " in " << count;
        }
    }
}

TEST(ranges, joinedAreTheWhole) {
    for (const log_t& log : shippedLogs()) {
        checkCuts(log, 12);
    }
    for (const log_t& log : madeLogs()) {
        checkCuts(log, 5);
    }
}

TEST(ranges, joinedAreTheWholeWithOptions) {
    readOptions_t strict;
    strict.split.strict = true;
    readOptions_t needsChecksum;
    needsChecksum.split.requireChecksum = true;
    readOptions_t notBefore;
    notBefore.dating.notBefore = kalo::date_t{2030, 1, 1};
    readOptions_t dayFirst;
    dayFirst.dateOrder = dateOrder_t::dayFirst;
    for (const readOptions_t& options : {strict, needsChecksum, notBefore, dayFirst}) {
        for (const log_t& log : shippedLogs()) {
            checkCuts(log, 3, options);
        }
        for (const log_t& log : madeLogs()) {
            checkCuts(log, 3, options);
        }
    }
}

TEST(ranges, recordingsJoinedAreTheWhole) {
    const std::vector<log_t> logs = recordings();
    if (logs.empty()) {
        GTEST_SKIP() << "KALO_RECORDINGS names no folder";
    }
    for (const log_t& log : logs) {
        checkCuts(log, mostCuts(4));
    }
    // Most are shorter than what is read in front of a range. Groups that stay open where a
    // recording ends are too far in front to be counted.
    log_t all = {"all recordings", {}};
    for (const log_t& log : logs) {
        all.text += log.text;
    }
    checkCuts(all, mostCuts(8), {}, false);
}

// Line ends, blanks and text in any order, cut at every byte.
TEST(ranges, eachLineIsInOneRange) {
    std::mt19937 draw(20140801); // NOLINT(cert-msc51-cpp): the same in each run
    for (int i = 0; i < 200; ++i) {
        log_t log = {"of a few bytes", ""};
        for (int j = 0; j < 12; ++j) {
            const char* const fragments[] = {"\r", "\n", "\r\n", " ", "a", "$GPDPT,1"};
            log.text += fragments[draw() % std::size(fragments)];
        }
        checkCuts(log, static_cast<unsigned>(log.text.size()));
    }
}

TEST(ranges, lineStarts) {
    struct row_t {
        std::string text;
        std::uint64_t offset;
        std::uint64_t start;
    };
    for (const row_t& row : std::vector<row_t>{
             {"one\ntwo\n", 0, 0},
             {"one\ntwo\n", 1, 4},
             {"one\ntwo\n", 4, 4},
             {"one\ntwo\n", 5, 8},     // the end of the input
             {"one\r\ntwo", 4, 5},     // CR LF is one line end
             {"one\rtwo", 2, 4},       // so is CR
             {"one\r\r\r\ntwo", 5, 7}, // and CRs that LF follows
             {"one\r\rtwo", 4, 5},     // the empty line belongs to the line in front of it
             {"one\n\ntwo", 4, 4},     // an empty line that begins behind LF
             {"one\n" + std::string(9999, 'x') + "\ntwo", 5, 10004},
             {std::string(9999, '\r') + "two", 1, 9999},
             {"one", 1, 3},
             {"", 0, 0},
         }) {
        text_t input(row.text);
        EXPECT_EQ(lineStartAt(input, row.offset), row.start)
            << testing::PrintToString(row.text.substr(0, 20)) << " from " << row.offset;
    }
}

TEST(ranges, lineEndsAreCounted) {
    struct row_t {
        std::string text;
        std::uint64_t count;
    };
    for (const row_t& row : std::vector<row_t>{
             {"", 0},
             {"one\ntwo\n", 2},
             {"one\r\ntwo\r\n", 2},
             {"one\rtwo\r", 2},
             {"one\r\r\ntwo\n", 2},
             {"one\r\rtwo\n", 3},
             {std::string(300, '\n'), 300},
             {std::string(127, 'x') + "\r\nx\n", 2}, // CR and LF in two blocks
             {std::string(127, 'x') + "\rx\n", 2},
         }) {
        EXPECT_EQ(countLineEnds(row.text), row.count)
            << testing::PrintToString(row.text.substr(0, 20));
    }
}

// A range that dates itself does not read the whole log in front of it.
TEST(ranges, ownDatesNeedLittleOfTheLog) {
    std::string text;
    for (unsigned i = 0; i < 20000; ++i) {
        text += "$GPZDA,120000,14,03,2026,00,00\r\n";
    }
    text_t input(text);
    const readerState_t state = stateAt(input, text.size(), {});
    EXPECT_TRUE(state.dating == stateAt(input, text.size() / 2, {}).dating);
    EXPECT_LT(input.readBytes(), text.size());
}

// The day that the caller states is that of the first line of the range.
TEST(ranges, statedDayIsThatOfTheRange) {
    const std::string text = positions(86390, 20, [](unsigned /*i*/) { return std::string(); });
    const std::uint64_t midnight = text.size() / 2;
    readOptions_t options;
    options.dating.date = kalo::date_t{2026, 3, 15};
    text_t input(text);
    rangeBytes_t bytes(input, {midnight, byteRange_t().end});
    decoded_t out;
    decode(bytes, stateAt(input, bytes.begin(), options), true, options, out);
    const std::string begin =
        "{\"source\":\"log\",\"line\":null,\"offset\":" + std::to_string(midnight) +
        ",\"type\":\"GLL\",\"talker\":\"GP\",\"time\":\"2026-03-15T00:00:00Z\"";
    EXPECT_EQ(out.json.substr(0, begin.size()), begin);
}

} // namespace
