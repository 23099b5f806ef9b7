// `kalo time` as a program.
#include <algorithm>

#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/tool/runTool.h"
#include "tests/tool/toolOutput.h"

namespace {

struct instant_t {
    const char* text;
    const char* instant; // time, week, seconds, Unix seconds
    std::string leap = {};
};

TEST(time, conversions) {
    const instant_t rows[] = {
        {"1930:0", "2016-12-31T23:59:43Z 1930 0 1483228783"},
        // A leap second keeps its name; its Unix time is that of the second behind it.
        {"1930:17", "2016-12-31T23:59:60Z 1930 17 1483228800"},
        {"1930:17.5", "2016-12-31T23:59:60.5Z 1930 17.5 1483228800.5"},
        {"2016-12-31T23:59:60.5Z", "2016-12-31T23:59:60.5Z 1930 17.5 1483228800.5"},
        {"2017-01-01T00:59:60+01:00", "2016-12-31T23:59:60Z 1930 17 1483228800"},
        {"2016-12-31T23:59:60Z", "2016-12-31T23:59:60Z 1930 17 1483228800", "17,18,137,7"},
        {"1930:18", "2017-01-01T00:00:00Z 1930 18 1483228800"},
        {"1930:19.5", "2017-01-01T00:00:01.5Z 1930 19.5 1483228801.5"},
        {"2016-12-31T23:59:42.5Z", "2016-12-31T23:59:42.5Z 1929 604799.5 1483228782.5"},
        {"2016-12-31T23:59:60Z", "2016-12-31T23:59:60Z 1930 17 1483228800"},
        // What lies beyond a microsecond is rounded before the week is found.
        {"@1483228782.9999996", "2016-12-31T23:59:43Z 1930 0 1483228783"},
        {"1929:604799.9999999", "2016-12-31T23:59:43Z 1930 0 1483228783"},
        {"2017-01-01 00:00:01.25", "2017-01-01T00:00:01.25Z 1930 19.25 1483228801.25"},
        {"2017-01-01t02:30:00+02:30", "2017-01-01T00:00:00Z 1930 18 1483228800"},
        {"2016-12-31T16:00:00-0800", "2017-01-01T00:00:00Z 1930 18 1483228800"},
        {"@1483228799.25", "2016-12-31T23:59:59.25Z 1930 16.25 1483228799.25"},
        {"@362793599", "1981-06-30T23:59:59Z 77 259199 362793599"},
        {"@362793600", "1981-07-01T00:00:00Z 77 259201 362793600"},
        {"1980-01-06T00:00:00Z", "1980-01-06T00:00:00Z 0 0 315964800"},
        {"2106-02-07T06:28:15Z", "2106-02-07T06:28:15Z 6579 23313 4294967295"},
        {"6579:23313", "2106-02-07T06:28:15Z 6579 23313 4294967295"}, // what it says, it reads
        {"@1483228799.25", "2016-12-31T23:59:59.25Z 1930 16.25 1483228799.25", "17,18,137,7"},
        {"1930:18", "2017-01-01T00:00:01Z 1930 18 1483228801", "17,18,137,7"},
        {"1930:18", "2017-01-01T00:00:00Z 1930 18 1483228800", "18,18,137,7"},
        // One that the table does not know. Towards UTC the new offset holds from its GPS day on.
        {"2448:259200", "2026-12-08T23:59:41Z 2448 259200 1796774381", "18,19,144,3"},
        {"@1796774399", "2026-12-08T23:59:59Z 2448 259217 1796774399", "18,19,144,3"},
        {"@1796774400", "2026-12-09T00:00:00Z 2448 259219 1796774400", "18,19,144,3"},
    };
    for (const instant_t& row : rows) {
        const texts_t parts = words(row.instant);
        const std::string expected = R"({"time":")" + parts[0] + R"(","week":)" + parts[1] +
                                     R"(,"seconds":)" + parts[2] + R"(,"unix":)" + parts[3] + "}\n";
        texts_t arguments = {"time"};
        if (!row.leap.empty()) {
            arguments.insert(arguments.end(), {"--leap", row.leap});
        }
        const std::string line = row.text + std::string("\r\n");
        EXPECT_EQ(runTool(arguments, line + line, 1).out, expected + expected);
        arguments.emplace_back(row.text);
        const result_t result = runTool(arguments);
        EXPECT_EQ(result.out, expected) << row.text << row.leap;
        EXPECT_EQ(result.status, 0) << row.text << ": " << result.err;
    }
}

TEST(time, whatCannotBeRead) {
    for (const char* wrong :
         {"17,18,137", "17,18,137,7,1", "17,18,256,7", "17,18,137,0", "17,18,137,8", "a,18,137,7",
          "128,18,137,7", "17,4294967295,137,7", "-1,18,137,7", "17,,137,7", ""}) {
        const result_t result = runTool({"time", "--leap", wrong, "@1483228800"});
        EXPECT_EQ(result.status, 2) << wrong;
        expectParts(result.err, "--leap");
    }
    const struct {
        const char* reason; // a part of it
        texts_t texts;
    } rows[] = {
        {"earlier than 1980-01-06", words("1980-01-05T23:59:59Z @315964799.75 @-1")},
        {"later than 2106-02-07T06:28:15Z", words("2106-02-07T06:28:16Z @4294967296 @1e300")},
        {"later than 2106", words("6579:23314")},
        {"GPS week out of range", words("6580:0 4294967295:0")},
        {"outside the week", words("1930:604800 1930:-1")},
        {"no leap second", words("2014-12-31T23:59:60Z 2016-12-31T22:59:60Z")},
        {"WEEK:SECONDS", words("4294967296:0 1930: 1930:18:3")},
        {"not Unix seconds", words("@ @nan @5s")},
        {"not an instant",
         {"", ":18", "yesterday", "1483228800", "2017-01-01", "2017-13-01T00:00:00Z"}},
        {"not an instant",
         words("2017-02-29T00:00:00Z 2017-01-01T24:30:00Z 2017-01-01T00:00:00Zx")},
    };
    for (const auto& row : rows) {
        for (const std::string& text : row.texts) {
            const result_t result = runTool({"time", "@1483228800", text, "1930:18"});
            EXPECT_EQ(result.status, 1) << text;
            EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 2) << result.out;
            EXPECT_EQ(result.err.find("kalo: " + text + ": "), 0U) << result.err;
            expectParts(result.err, row.reason);
        }
    }
    const result_t result = runTool({"time"}, "@1483228800\n\nyesterday\r\n1930:18");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err.find("kalo: -: line 3: yesterday: "), 0U) << result.err;
}

TEST(time, people) {
    SKIP_WITHOUT_TERMINALS();
    const link_t screen = makeTerminal();
    tool_t people({"time", "1930:18.5"}, makePipe().theirs, screen.theirs);
    EXPECT_EQ(people.wait().status, 0);
    char text[256] = {};
    ASSERT_GT(read(screen.ours.number(), text, sizeof text - 1), 0);
    expectParts(text, "2017-01-01T00:00:00.5Z; 1930; 18.5; 1483228800.5");
    EXPECT_EQ(std::string(text).find('{'), std::string::npos) << text;
}

// Each line is answered while the next is still to come.
TEST(time, pipes) {
    link_t link = makePipe();
    tool_t tool({"time"}, std::exchange(link.theirs, descriptor_t()));
    ASSERT_TRUE(link.ours.write("@1483228800\n"));
    EXPECT_EQ(json_t::parse(tool.readLine())["week"], 1930);
    link.ours = descriptor_t();
    EXPECT_EQ(tool.wait().status, 0);
}

} // namespace
