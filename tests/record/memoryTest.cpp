// The tool's way from bytes to output, when an allocation fails.
#include <memory>
#include <string>

#include "tests/allocations.h"
#include "tests/text.h"
#include "tools/output/jsonWriter.h"
#include "tools/output/tableWriter.h"
#include "tools/record/recordReader.h"
#include "tools/record/recordTable.h"
#include "tools/record/registry.h"

namespace {

using allocations::failEach;

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
           "SOURCETABLE 200 OK\r\nSTR;PIER1;Pier One;RTCM 3.2;1004(1);2;GPS;HARBOUR;GBR\r\n"
           "$GPGGA,damaged*00\r\nnot a record at all, but \"text\"\r\n";
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
        json.setSource("a source with a long name");
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

TEST(memory, everyAllocationOfATableMayFail) {
    const std::string log = sampleLog();
    const readOptions_t read = options();
    failEach(20, [&](auto fail) {
        fail([&] {
            buffer_t out;
            tableWriter_t table(tableNamed("GGA", *read.dictionary), {});
            table.writeHead(out);
            recordReader_t reader(read);
            scratch_t scratch;
            reader.feed(log);
            takeAll(reader, [&](const record_t& record) {
                if (typeNameOf(record) == "GGA") {
                    table.write(record, "a source with a long name", scratch, out);
                }
            });
        });
    });
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
