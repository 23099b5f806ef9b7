// `kalo encode tss1`: what `kalo decode` prints goes back to the same bytes, and no value that a
// record cannot hold goes through.
#include <algorithm>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/tool/runTool.h"
#include "tests/tool/toolOutput.h"

namespace {

using namespace std::string_literals;

using texts_t = std::vector<std::string>;

texts_t words(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

// One line that encodes, in both forms, and its record.
const std::string json = R"({"type":"TSS1","roll":1.05,"pitch":-2.1,"heave":-1.2,)"
                         R"("horizontalAcceleration":0,"verticalAcceleration":-0.08,)"
                         R"("status":"U"})"
                         "\n";
const std::string head = "type,roll,pitch,heave,horizontalAcceleration,verticalAcceleration,status\n";
const std::string csv = "TSS1,1.05,-2.1,-1.2,0,-0.08,U\n";
const std::string record = ":00FF80 -0120U 0105 -0210\r\n";

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t begin = text.find(from);
    return begin == text.npos ? text : text.replace(begin, from.size(), to);
}

// Runs `kalo encode tss1` on whole input and on single bytes.
result_t encode(const std::string& input, const std::string& options = "") {
    const result_t result = runTool(words("encode tss1 " + options), input);
    const result_t bytewise = runTool(words("encode tss1 " + options), input, 1);
    EXPECT_EQ(bytewise.out, result.out);
    EXPECT_EQ(bytewise.err, result.err);
    return result;
}

// Expects a complaint about each of these lines, in the words of `parts`.
void expectFaults(const result_t& result, const std::vector<int>& lines, const texts_t& parts) {
    EXPECT_EQ(result.status, lines.empty() ? 0 : 1) << result.err;
    std::istringstream errors(result.err);
    std::string error;
    for (const int line : lines) {
        EXPECT_TRUE(std::getline(errors, error)) << "no error in line " << line;
        EXPECT_EQ(error.rfind("kalo: -: line " + std::to_string(line) + ": ", 0), 0) << error;
        for (const std::string& part : parts) {
            EXPECT_NE(error.find(part), error.npos) << part << " is not in " << error;
        }
    }
    EXPECT_FALSE(std::getline(errors, error)) << error;
}

// Every count of every column, among all combinations of status and sign.
TEST(encode, givesBackWhatWasDecoded) {
    constexpr int counts = 19999; // of a column with a sign
    const auto column = [](int number) {
        const int count = number % counts - counts / 2;
        char text[8];
        static_cast<void>(
            std::snprintf(text, sizeof text, "%c%04d", count < 0 ? '-' : ' ', std::abs(count)));
        return std::string(text);
    };
    std::string input;
    for (int i = 0; i < 65536; ++i) {
        char accelerations[8];
        static_cast<void>(std::snprintf(accelerations, sizeof accelerations, "%02X%04X",
                                        static_cast<unsigned>(i * 7 % 256),
                                        static_cast<unsigned>(i)));
        input += ":"s + accelerations + " " + column(i) + "UuGgHhFf"[i % 8] + column(i * 3) + " " +
                 column(i * 5 + 1) + "\r\n";
    }
    for (const std::string options : {"", "--radians"}) {
        const result_t decoded = runTool(words("decode --quiet " + options), input);
        const result_t encoded = runTool(words("encode tss1 " + options), decoded.out);
        EXPECT_EQ(encoded.err, "") << options;
        EXPECT_EQ(encoded.status, 0) << options;
        EXPECT_EQ(encoded.out.size(), input.size()) << options;
        const auto differs = std::mismatch(input.begin(), input.end(), encoded.out.begin(),
                                           encoded.out.end()).first - input.begin();
        EXPECT_EQ(differs, static_cast<std::ptrdiff_t>(input.size()))
            << options << " line " << differs / 27 + 1 << ": "
            << input.substr(static_cast<std::size_t>(differs / 27 * 27), 25);
    }
}

// One value in the place of the good one: the columns that it gives, or what the error names.
TEST(encode, values) {
    const struct range_t {
        const char* key;
        const char* good;  // in the good line
        std::size_t begin; // of its columns
        std::size_t width;
        const char* least;
        const char* most;
    } ranges[] = {
        {"roll", "1.05", 14, 5, "-99.99", "99.99"},
        {"pitch", "-2.1", 20, 5, "-99.99", "99.99"},
        {"heave", "-1.2", 8, 5, "-99.99", "99.99"},
        {"horizontalAcceleration", "0", 1, 2, "0", "9.7665"},
        {"verticalAcceleration", "-0.08", 3, 4, "-20.48", "20.479375"},
    };
    struct row_t {
        const char* text;
        const char* columns; // null: out of range
        const char* options = "";
    };
    const std::vector<row_t> hundredths = {
        {"99.99", " 9999"},   {"-99.99", "-9999"},  {"99.995", nullptr},     {"-99.995", nullptr},
        {"100", nullptr},     {"-100", nullptr},    {"1e300", nullptr},      {"-1e300", nullptr},
        {"1.0549", " 0105"},  {"1.0551", " 0106"},  {"-1.0549", "-0105"},    {"-1.0551", "-0106"},
        {"-0.0", " 0000"},    {"1e1", " 1000"},     {"3600000000", nullptr},
    };
    const std::vector<row_t> radians = {
        {"0.1", " 0573", "--radians"},     {"-0.1", "-0573", "--radians"},
        {"1.7451", " 9999", "--radians"},  {"-1.7451", "-9999", "--radians"},
        {"1.7453", nullptr, "--radians"},  {"-1.7453", nullptr, "--radians"},
    };
    const std::vector<row_t> heave = {{"1.5", " 0150", "--radians"}, {"100", nullptr, "--radians"}};
    const std::vector<row_t> horizontal = {
        {"9.7665", "FF"}, {"9.78", "FF"},  {"9.79", nullptr}, {"9.8048", nullptr}, {"-0.0", "00"},
        {"0.019", "00"},  {"0.020", "01"}, {"0.057", "01"},   {"0.058", "02"},
        {"-0.01", nullptr}, {"-1e300", nullptr}, {"1e300", nullptr},
    };
    const std::vector<row_t> vertical = {
        {"20.479375", "7FFF"}, {"-20.48", "8000"},   {"20.48", nullptr},    {"-20.480625", nullptr},
        {"1e300", nullptr},    {"-1e300", nullptr},  {"-0.000625", "FFFF"}, {"-0.0", "0000"},
        {"0.0003", "0000"},    {"-0.0003", "0000"},  {"0.0004", "0001"},    {"-0.0004", "FFFF"},
        {"0.0009", "0001"},    {"-0.0009", "FFFF"},  {"0.001", "0002"},     {"-0.001", "FFFE"},
    };
    const auto check = [](const range_t& range, const row_t& row) {
        const std::string key = "\""s + range.key + "\":";
        const texts_t inputs = {
            json + replaced(json, key + range.good, key + row.text) + json,
            // The columns of a table may stand in any order: this one comes first.
            replaced(head + csv, head, range.key + ","s + replaced(head, range.key, "other")) + csv};
        const std::string input = inputs[0];
        SCOPED_TRACE(range.key + " "s + row.text + row.options);
        const result_t result = encode(input, row.options);
        const std::string good = encode(json, row.options).out;
        if (row.columns != nullptr) {
            expectFaults(result, {}, {});
            EXPECT_EQ(result.out, good + std::string(good).replace(range.begin, range.width,
                                                                   row.columns) + good);
        } else {
            expectFaults(result, {2}, {range.key, row.text, range.least, range.most});
            EXPECT_EQ(result.out, good + good);
        }
    };
    for (const range_t& range : ranges) {
        const bool isAngle = range.key == "roll"s || range.key == "pitch"s;
        for (const std::vector<row_t>& rows :
             range.width == 2   ? std::vector{horizontal}
             : range.width == 4 ? std::vector{vertical}
                                : std::vector{hundredths, isAngle ? radians : heave}) {
            for (const row_t& row : rows) {
                check(range, row);
            }
        }
    }
}
} // namespace
