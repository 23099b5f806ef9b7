// `kalo time` as a program.
#include <algorithm>

#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/tool/runTool.h"
#include "tests/tool/toolOutput.h"

namespace {

using texts_t = std::vector<std::string>;

struct row_t {
    const char* text;
    std::string time;
    std::string week;
    std::string seconds;
    std::string unixTime;
};

std::string lineOf(const row_t& row) {
    return R"({"time":")" + row.time + R"(","week":)" + row.week + R"(,"seconds":)" + row.seconds +
           R"(,"unix":)" + row.unixTime + "}\n";
}

// All of them from arguments and from lines of standard input.
void runRows(const std::vector<row_t>& rows, const texts_t& options = {}) {
    texts_t arguments = {"time"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    std::string lines;
    std::string expected;
    for (const row_t& row : rows) {
        texts_t one = arguments;
        one.emplace_back(row.text);
        const result_t result = runTool(one);
        EXPECT_EQ(result.out, lineOf(row)) << row.text;
        EXPECT_EQ(result.status, 0) << row.text << ": " << result.err;
        lines += std::string(row.text) + "\r\n";
        expected += lineOf(row);
    }
    EXPECT_EQ(runTool(arguments, lines, 1).out, expected);
}

TEST(time, byTheTable) {
    runRows({
        {"1930:0", "2016-12-31T23:59:43Z", "1930", "0", "1483228783"},
        {"1930:16", "2016-12-31T23:59:59Z", "1930", "16", "1483228799"},
        {"1930:17", "2017-01-01T00:00:00Z", "1930", "17", "1483228800"}, // the leap second
        {"1930:18", "2017-01-01T00:00:00Z", "1930", "18", "1483228800"},
        {"1930:19.5", "2017-01-01T00:00:01.5Z", "1930", "19.5", "1483228801.5"},
        {"2016-12-31T23:59:42.5Z", "2016-12-31T23:59:42.5Z", "1929", "604799.5", "1483228782.5"},
        {"2016-12-31T23:59:59Z", "2016-12-31T23:59:59Z", "1930", "16", "1483228799"},
        {"2016-12-31T23:59:60Z", "2017-01-01T00:00:00Z", "1930", "18", "1483228800"},
        {"2017-01-01T00:00:00Z", "2017-01-01T00:00:00Z", "1930", "18", "1483228800"},
        {"2017-01-01 00:00:01.25", "2017-01-01T00:00:01.25Z", "1930", "19.25", "1483228801.25"},
        {"2017-01-01t02:30:00+02:30", "2017-01-01T00:00:00Z", "1930", "18", "1483228800"},
        {"2016-12-31T16:00:00-0800", "2017-01-01T00:00:00Z", "1930", "18", "1483228800"},
        {"@1483228799.25", "2016-12-31T23:59:59.25Z", "1930", "16.25", "1483228799.25"},
        {"@1483228800", "2017-01-01T00:00:00Z", "1930", "18", "1483228800"},
        {"@362793599", "1981-06-30T23:59:59Z", "77", "259199", "362793599"},
        {"@362793600", "1981-07-01T00:00:00Z", "77", "259201", "362793600"},
        {"2014-08-01T00:00:00Z", "2014-08-01T00:00:00Z", "1803", "432016", "1406851200"},
        {"0:0", "1980-01-06T00:00:00Z", "0", "0", "315964800"},
        {"1980-01-06T00:00:00Z", "1980-01-06T00:00:00Z", "0", "0", "315964800"},
        {"2106-02-07T06:28:15Z", "2106-02-07T06:28:15Z", "6579", "23313", "4294967295"},
        {"6579:23313", "2106-02-07T06:28:15Z", "6579", "23313",
         "4294967295"}, // what it says, it reads
        {"2038-01-19T03:14:08Z", "2038-01-19T03:14:08Z", "3028", "184466", "2147483648"},
    });
}

TEST(time, byBroadcastLeapSeconds) {
    runRows({{"@1483228799.25", "2016-12-31T23:59:59.25Z", "1930", "16.25", "1483228799.25"},
             {"2017-01-01T00:00:00Z", "2017-01-01T00:00:00Z", "1930", "18", "1483228800"},
             {"1930:18", "2017-01-01T00:00:01Z", "1930", "18", "1483228801"}},
            {"--leap", "17,18,137,7"});
    runRows({{"1930:18", "2017-01-01T00:00:00Z", "1930", "18", "1483228800"},
             {"@1483228800", "2017-01-01T00:00:00Z", "1930", "18", "1483228800"}},
            {"--leap", "18,18,137,7"});
    // One that the table does not know. Towards UTC the new offset holds from its GPS day on.
    runRows({{"2448:259199", "2026-12-08T23:59:41Z", "2448", "259199", "1796774381"},
             {"2448:259200", "2026-12-08T23:59:41Z", "2448", "259200", "1796774381"},
             {"@1796774399", "2026-12-08T23:59:59Z", "2448", "259217", "1796774399"},
             {"@1796774400", "2026-12-09T00:00:00Z", "2448", "259219", "1796774400"}},
            {"--leap", "18,19,144,3"});
    for (const char* wrong : {"17,18,137", "17,18,137,7,1", "17,18,256,7", "17,18,137,0",
                              "17,18,137,8", "a,18,137,7", "-1,18,137,7", "17,,137,7", ""}) {
        const result_t result = runTool({"time", "--leap", wrong, "@1483228800"});
        EXPECT_EQ(result.status, 2) << wrong;
        EXPECT_NE(result.err.find("--leap"), std::string::npos) << wrong << ": " << result.err;
    }
}

TEST(time, whatCannotBeRead) {
    struct {
        const char* text;
        const char* reason; // a part of it
    } const rows[] = {
        {"1980-01-05T23:59:59Z", "before 1980-01-06"},
        {"@315964799.75", "before 1980-01-06"},
        {"@-1", "before 1980-01-06"},
        {"2106-02-07T06:28:16Z", "after 2106-02-07T06:28:15Z"},
        {"@4294967296", "after 2106-02-07T06:28:15Z"},
        {"@1e300", "after 2106-02-07T06:28:15Z"},
        {"6579:23314", "the end of what can be converted"},
        {"6580:0", "the end of what can be converted"},
        {"4294967295:0", "the end of what can be converted"},
        {"1930:604800", "outside the week"},
        {"4294967296:0", "WEEK:SECONDS"},
        {"1930:", "WEEK:SECONDS"},
        {":18", "WEEK:SECONDS"},
        {"1930:18:3", "WEEK:SECONDS"},
        {"@", "no number"},
        {"@nan", "no number"},
        {"@5s", "no number"},
        {"", "no instant"},
        {"yesterday", "no instant"},
        {"1483228800", "no instant"},
        {"2017-01-01", "no instant"},
        {"2017-13-01T00:00:00Z", "no instant"},
        {"2017-02-29T00:00:00Z", "no instant"},
        {"2017-01-01T24:30:00Z", "no instant"},
        {"2017-01-01T00:00:00Zx", "no instant"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        const result_t result = runTool({"time", "@1483228800", row.text, "1930:18"});
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 2) << result.out;
        EXPECT_EQ(result.err.find(std::string("kalo: ") + row.text + ": "), 0U) << result.err;
        EXPECT_NE(result.err.find(row.reason), std::string::npos) << result.err;
    }
    const result_t result = runTool({"time"}, "@1483228800\n\nyesterday\r\n1930:18");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 2) << result.out;
    EXPECT_EQ(result.err.find("kalo: -: line 3: yesterday: "), 0U) << result.err;
}

TEST(time, people) {
    SKIP_WITHOUT_TERMINALS();
    link_t screen = makeTerminal();
    tool_t people({"time", "1930:18.5"}, makePipe().theirs, std::move(screen.theirs));
    EXPECT_EQ(people.wait().status, 0);
    char text[256] = {};
    ASSERT_GT(read(screen.ours.number(), text, sizeof text - 1), 0);
    for (const char* part : {"2017-01-01T00:00:00.5Z", "1930", "18.5", "1483228800.5"}) {
        EXPECT_NE(std::string(text).find(part), std::string::npos) << text;
    }
    EXPECT_EQ(std::string(text).find('{'), std::string::npos) << text;

    link_t keyboard = makeTerminal();
    EXPECT_EQ(tool_t({"time"}, std::move(keyboard.theirs)).wait().status, 2);
}

TEST(time, pipes) {
    link_t pipe = makePipe(); // each line is answered while the next is still to come
    tool_t tool({"time"}, std::move(pipe.theirs));
    writeAll(pipe.ours, "@1483228800\n");
    EXPECT_EQ(json_t::parse(tool.readLine())["week"], 1930);
    pipe.ours = descriptor_t();
    EXPECT_EQ(tool.wait().status, 0);
}

} // namespace
