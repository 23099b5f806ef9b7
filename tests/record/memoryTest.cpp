// The tool's way from bytes to output, when an allocation fails.
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "tests/allocations.h"
#include "tests/text.h"
#include "tools/analysis/findingGroups.h"
#include "tools/analysis/summaryText.h"
#include "tools/analysis/thinning.h"
#include "tools/column/arrowExport.h"
#include "tools/column/columnReader.h"
#include "tools/input/unpack.h"
#include "tools/output/jsonWriter.h"
#include "tools/output/tableWriter.h"
#include "tools/record/recordReader.h"
#include "tools/record/recordTable.h"
#include "tools/record/registry.h"
#include "tools/terminal/message.h"

namespace {

using allocations::failEach;
using namespace std::string_view_literals;

constexpr const char* source = "a source with a long name";

// Records of every kind, with what loggers write around them.
std::string sampleLog() {
    return "2026-03-14T23:59:58.412Z seapath " + sentence("$GPZDA,235958.41,14,03,2026,,") +
           "\\s:station-with-a-long-name,c:1773532798*00\\" +
           sentence("$GPGGA,235959.00,5012.34,N,00110.25,E,2,17,0.80,12.40,M,46.90,M,2.0,0120") +
           sentence("$GPGSV,2,1,5,2,65,11,47,5,43,14,44,7,14,77,34,12,33,5,39") +
           sentence("$GPGSV,2,2,5,13,8,31,36") + sentence("$GPXYZ,no view and no description") +
           sentence("$GPGSA,A,3,02,05,07,12,15,25,29,30,31,32,33,34,1,2,3,1") +
           ":1A0280 -0085F-0286 -0135\r\n"
           "14 MAR 2026 23:58:34:106 B:a-beacon-with-a-long-name X:25.1\r\n"
           "SOURCETABLE 200 OK\r\n"
           "STR;PIER1;Pier One;RTCM 3.2;1004(1);2;GPS;HARBOUR;GBR;50.2;1.1\r\n"
           "$GPGGA,damaged*00\r\nnot a record at all, but \"text\"\r\n" +
           sentence("$GPGGA,235958.00,5112.34,N,00110.25,E,2,17,0.80,12.40,M,46.90,M,2.0,0120");
}

/// Takes all records that there are.
template <typename Take>
void takeAll(recordReader_t& reader, Take take) {
    for (record_t record; reader.next(record);) {
        take(record);
    }
}

readOptions_t options() {
    readOptions_t options;
    options.dictionary = std::make_shared<dictionaryHolder_t>();
    options.dictionary->add("", "empty.toml"); // reads the built-in descriptions
    return options;
}

// After a failure the reader goes on, and what was printed is a beginning of the output.
TEST(memory, everyAllocationOfTheReaderAndItsOutputMayFail) {
    const std::string log = sampleLog();
    const readOptions_t read = options();
    const auto print = [&](recordReader_t& reader, buffer_t& out) {
        jsonWriter_t json(out, {});
        json.setSource(source);
        scratch_t scratch;
        const std::size_t half = log.size() / 2;
        const auto write = [&](const record_t& record) { json.write(record, scratch); };
        reader.feed(std::string_view(log).substr(0, half));
        takeAll(reader, write);
        reader.feed(std::string_view(log).substr(half));
        takeAll(reader, write);
        reader.finish();
        takeAll(reader, write);
    };
    buffer_t whole;
    {
        recordReader_t reader(read);
        print(reader, whole);
    }
    EXPECT_GT(whole.size(), 1500U);
    failEach(40, [&](auto fail) {
        buffer_t out;
        recordReader_t reader(read);
        const bool failed = fail([&] { print(reader, out); });
        EXPECT_TRUE(failed || out.text() == whole.text());
        const std::size_t end = out.text().rfind('\n') + 1; // the last record may be cut
        EXPECT_EQ(out.text().substr(0, end), whole.text().substr(0, end));
        // the reader can be used to its end
        takeAll(reader, [](const record_t& /*record*/) {});
        reader.feed(log);
        takeAll(reader, [](const record_t& /*record*/) {});
        reader.finish();
        takeAll(reader, [](const record_t& /*record*/) {});
        EXPECT_GE(reader.bytes(), log.size());
    });
}

/// What the actions read.
struct sample_t {
    std::string log;
    readOptions_t read;
};

template <typename Take>
void readAll(recordReader_t& reader, const sample_t& sample, Take take) {
    reader.feed(sample.log);
    takeAll(reader, take);
    reader.finish();
    takeAll(reader, take);
}

void writeTable(const sample_t& sample, buffer_t& out) {
    tableWriter_t table(tableNamed("GGA", *sample.read.dictionary), {});
    table.writeHead(out);
    recordReader_t reader(sample.read);
    scratch_t scratch;
    readAll(reader, sample, [&](const record_t& record) {
        if (typeNameOf(record) == "GGA") {
            table.write(record, source, scratch, out);
        }
    });
}

void summarise(const sample_t& sample, buffer_t& out) {
    summaryOptions_t options;
    options.near = place_t{0.9, 0.1};
    summary_t summary(options);
    recordReader_t reader(sample.read);
    summary.beginInput(source);
    readAll(reader, sample, [&](const record_t& record) { summary.add(record); });
    summary.endInput(reader);
    for (const summaryLine_t& line : summaryLines(summary)) {
        out.append(line.text);
    }
    for (const summaryTable_t& table : summaryTables(summary, printable)) {
        out.append(table.table.text(-1));
    }
}

void check(const sample_t& sample, buffer_t& out) {
    findingGroups_t findings;
    checker_t checker({}, findings);
    recordReader_t reader(sample.read);
    checker.beginInput(source, reader);
    readAll(reader, sample, [&](const record_t& record) { checker.add(record); });
    checker.endInput();
    for (const finding_t& finding : findings.all()) {
        out.append(messageOf(finding) + finding.raw + '\n');
    }
}

void thinTrack(const sample_t& sample, buffer_t& out) {
    thinningOptions_t options;
    options.tolerance = 1;
    thinning_t thinning(
        options, [&](const fix_t& fix) { out.append(fmt::format("{} ", fix.line)); },
        [&] { out.append("end"); });
    epochs_t epochs;
    scratch_t scratch;
    measurements_t measured;
    const auto add = [&](const fix_t* fix) {
        if (fix != nullptr) {
            thinning.add(*fix);
        }
    };
    recordReader_t reader(sample.read);
    readAll(reader, sample, [&](const record_t& record) {
        readMeasurements(record, scratch, measured);
        add(epochs.add(record, measured));
    });
    add(epochs.finish());
    thinning.endLine();
}

/// A structure for other programs, released with its block.
template <typename T>
struct released_t : T {
    released_t() : T() {}
    released_t(const released_t&) = delete;
    released_t& operator=(const released_t&) = delete;
    ~released_t() {
        if (this->release != nullptr) {
            this->release(this);
        }
    }
};

void exportColumns(const sample_t& sample, buffer_t& out) {
    columnReaderOptions_t options;
    options.read = sample.read;
    options.tables = {"GSV", "malformed", "unknown"};
    columnReader_t reader(std::move(options));
    reader.begin(source);
    reader.feed(sample.log);
    reader.end();
    for (const namedBatches_t& table : reader.take()) {
        std::uint64_t digest = 0;
        for (const array_t& column : table.batches[0]->columns) {
            digest = column.digest(digest);
        }
        released_t<arrowStream_t> stream;
        released_t<arrowSchema_t> types;
        released_t<arrowArray_t> rows;
        exportBatches(table.types, table.batches, stream);
        if (stream.getSchema(&stream, &types) != 0 || stream.getNext(&stream, &rows) != 0) {
            throw std::bad_alloc(); // these two give a number instead
        }
        out.append(fmt::format("{} {} {};", table.name, rows.length, digest));
    }
}

/// All bytes in one block.
class block_t : public bytes_t {
public:
    explicit block_t(std::string_view bytes) : m_bytes(bytes) {}
    std::string_view read() override { return std::exchange(m_bytes, {}); }
    std::string fault() const override { return {}; }

private:
    std::string_view m_bytes;
};

void appendAll(bytes_t& bytes, buffer_t& out) {
    for (std::string_view block = bytes.read(); !block.empty(); block = bytes.read()) {
        out.append(block);
    }
    out.append(bytes.fault());
}

// "packed bytes", compressed and in an archive, both cut off.
constexpr std::string_view packed = "\037\213\010\0\0\0\0\0\0\003+HL\316NMQH\252,I-\346\002\0-"sv;
constexpr std::string_view archived =
    "PK\003\004\024\0\0\0\0\0\0\0!\0-\227\326\224\015\0\0\0\015\0\0\0\001\0\0\0apacked bytes\n"
    "PK\001\002\024\003\024\0\0\0\0\0\0\0!\0-\227\326\224\015\0\0\0\015\0\0\0\001\0\0\0\0\0\0\0"sv;

void unpackText(const sample_t& /*sample*/, buffer_t& out) {
    block_t block(packed);
    appendAll(*unpack(contentOf(packed, false), block), out);
}

void readArchive(const sample_t& /*sample*/, buffer_t& out) {
    block_t block(archived);
    const std::unique_ptr<members_t> archive = openArchive(contentOf(archived, true), block);
    for (std::string name; archive->next(name);) {
        out.append(name);
        appendAll(*archive, out);
    }
    out.append(archive->fault());
}

/// A way of the tool from bytes to output.
struct action_t {
    const char* name;
    void (*run)(const sample_t& sample, buffer_t& out);
    long allocations;   ///< at least
    const char* result; ///< a part of the output
};

constexpr action_t actions[] = {{"a table of records", writeTable, 40, ",51.2056666666667,"},
                                {"a summary", summarise, 300, "PIER1"},
                                {"findings", check, 100, "position jumps"},
                                {"a track", thinTrack, 20, "2 13 end"},
                                {"columns", exportColumns, 300, "unknown 1 "},
                                {"compressed bytes", unpackText, 4, "packed bytes\nthe compressed"},
                                {"an archive", readArchive, 4, "apacked bytes\nthe compressed"}};

TEST(memory, everyAllocationOfAnActionMayFail) {
    const sample_t sample = {sampleLog(), options()};
    for (const action_t& action : actions) {
        SCOPED_TRACE(action.name);
        buffer_t whole;
        action.run(sample, whole);
        EXPECT_NE(whole.text().find(action.result), std::string_view::npos) << whole.text();
        failEach(action.allocations, [&](auto fail) {
            buffer_t out;
            if (fail([&] { action.run(sample, out); })) {
                out.clear();
                action.run(sample, out); // once more
            }
            EXPECT_EQ(out.text(), whole.text());
        });
    }
}

// What reads TOML is not here: it ends the program when memory runs out.
TEST(memory, everyAllocationOfADictionaryMayFail) {
    dictionary_t read;
    addSentences(R"([XYZ]
meaning = "a sentence of the test with a long description"
source = "manual"
values = [
    {name = "someTemperature", kind = "number", field = 1, meaning = "of the water below the keel"},
    {name = "someHeading", kind = "angle", field = 2, meaning = "from true north, as measured"},
])",
                 "own.toml", read);
    const dictionarySentence_t& sentence = read.sentences()[0];
    failEach(10, [&](auto fail) {
        dictionary_t dictionary;
        fail([&] { dictionary.add(sentence); });
        dictionary.add(sentence); // once more
        const dictionarySentence_t* const added = dictionary.named("xyz");
        ASSERT_NE(added, nullptr);
        EXPECT_EQ(added->rows.size(), 2U);
    });
}

} // namespace
