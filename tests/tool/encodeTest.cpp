// `kalo encode tss1`: what `kalo decode` prints goes back to the same bytes, and no value that a
// record cannot hold goes through.
#include <algorithm>
#include <cstring>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/tool/runTool.h"
#include "tests/tool/toolOutput.h"

namespace {

using namespace std::string_literals;

using texts_t = std::vector<std::string>;

texts_t words(std::string text, char separator = ' ') {
    std::replace(text.begin(), text.end(), separator, ' ');
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

// A record as the names and the texts of its values, in the order of the columns of a table.
using values_t = std::vector<std::pair<std::string, std::string>>;

const values_t good = {{"type", "TSS1"},  {"roll", "1.05"},
                       {"pitch", "-1.5"}, {"heave", "-1.2"},
                       {"status", "U"},   {"horizontalAcceleration", "0"},
                       {"further", "1"},  {"verticalAcceleration", "-0.08"}};
const std::string record = ":00FF80 -0120U 0105 -0150\r\n"; // what it encodes to

values_t with(const std::string& key, const std::string& text) {
    values_t values = good;
    for (auto& value : values) {
        value.second = value.first == key ? text : value.second;
    }
    return values;
}

std::string jsonOf(const values_t& values) {
    std::string line;
    for (const auto& [key, text] : values) {
        const char* quote = key == "type" || key == "status" ? "\"" : "";
        line.append(line.empty() ? "{\"" : ",\"").append(key).append("\":");
        line.append(quote).append(text).append(quote);
    }
    return line + "}\n";
}

std::string headOf(const values_t& values) {
    std::string line;
    for (const auto& value : values) {
        line.append(&value == values.data() ? "" : ",").append(value.first);
    }
    return line + "\n";
}

std::string cellsOf(values_t values) {
    for (auto& value : values) {
        std::swap(value.first, value.second);
    }
    return headOf(values);
}

const std::string json = jsonOf(good);
const std::string head = headOf(good);
const std::string cells = cellsOf(good);

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.find(from), from.size(), to);
}

// Expects the complaints "line:word,word", in the words of which each is found, and no other.
void expectFaults(const result_t& result, const std::string& faults) {
    EXPECT_EQ(result.status, faults.empty() ? 0 : 1) << result.err;
    std::istringstream errors(result.err);
    std::string error;
    for (const std::string& fault : words(faults)) {
        EXPECT_TRUE(std::getline(errors, error)) << "no error in " << fault;
        const std::size_t colon = fault.find(':');
        EXPECT_EQ(error.rfind("kalo: -: line " + fault.substr(0, colon + 1) + " ", 0), 0) << error;
        for (const std::string& part : words(fault.substr(colon + 1), ',')) {
            EXPECT_NE(error.find(part), error.npos) << part << " is not in " << error;
        }
    }
    EXPECT_FALSE(std::getline(errors, error)) << error;
}

// Every count of every column, with each status and in many combinations.
TEST(encode, givesBackWhatWasDecoded) {
    const auto column = [](int number) {
        const int count = number % 19999 - 9999;
        const std::string digits = std::to_string(10000 + std::abs(count)).substr(1);
        return (count < 0 ? "-" : " ") + digits;
    };
    std::string input;
    for (int i = 0; i < 65536; ++i) {
        char accelerations[16];
        static_cast<void>(std::snprintf(accelerations, sizeof accelerations, ":%02X%04X ",
                                        static_cast<unsigned>(i * 7 % 256),
                                        static_cast<unsigned>(i)));
        input += accelerations + column(i) + "UuGgHhFf"[i % 8] + column(i * 3) + " " +
                 column(i * 5 + 1) + "\r\n";
    }
    for (const std::string options : {"", "--radians"}) {
        const result_t decoded = runTool(words("decode --quiet " + options), input);
        const result_t encoded = runTool(words("encode tss1 " + options), decoded.out);
        EXPECT_EQ(encoded.err, "") << options;
        EXPECT_EQ(encoded.status, 0) << options;
        ASSERT_EQ(encoded.out.size(), input.size()) << options;
        for (std::size_t i = 0; i < input.size(); i += record.size()) {
            ASSERT_EQ(encoded.out.substr(i, record.size()), input.substr(i, record.size()));
        }
    }
}

// One value in the place of the good one, in both forms: the columns that it gives, or an error
// that names it and its range.
TEST(encode, values) {
    struct row_t {
        const char* text;
        const char* columns; // null: out of range
        const char* options = "";
    };
    using rows_t = std::vector<row_t>;
    const rows_t length = {
        {"99.99", " 9999"},  {"-99.99", "-9999"}, {"99.996", nullptr},  {"-99.996", nullptr},
        {"100", nullptr},    {"-100", nullptr},   {"1e+300", nullptr},  {"-1e+300", nullptr},
        {"1.0549", " 0105"}, {"1.0551", " 0106"}, {"-1.0549", "-0105"}, {"-1.0551", "-0106"},
        {"-0.0", " 0000"},   {"10", " 1000"},     {"1.7454", " 0175"},
    };
    rows_t angle = {
        {"0.1", " 0573", "--radians"},    {"-0.1", "-0573", "--radians"},
        {"1.7451", " 9999", "--radians"}, {"-1.7451", "-9999", "--radians"},
        {"1.7454", nullptr, "--radians"}, {"-1.7454", nullptr, "--radians"},
    };
    angle.insert(angle.end(), length.begin(), length.end());
    const rows_t horizontal = {
        {"9.7665", "FF"},   {"9.79", nullptr},    {"9.8048", nullptr}, {"1e+300", nullptr},
        {"-0.01", nullptr}, {"-1e+300", nullptr}, {"-0.0", "00"},      {"0.019", "00"},
        {"0.02", "01"},     {"0.057", "01"},      {"0.058", "02"},
    };
    const rows_t vertical = {
        {"20.479375", "7FFF"}, {"-20.48", "8000"},   {"20.48", nullptr},    {"-20.480625", nullptr},
        {"1e+300", nullptr},   {"-1e+300", nullptr}, {"-0.000625", "FFFF"}, {"-0.0", "0000"},
        {"0.0003", "0000"},    {"-0.0003", "0000"},  {"0.0004", "0001"},    {"-0.0004", "FFFF"},
        {"0.0009", "0001"},    {"-0.0009", "FFFF"},  {"0.001", "0002"},     {"-0.001", "FFFE"},
    };
    const struct {
        std::string key;
        std::size_t begin; // of its columns
        std::string range;
        const rows_t& rows;
    } keys[] = {
        {"roll", 14, "-99.99,to,99.99", angle},
        {"pitch", 20, "-99.99,to,99.99", angle},
        {"heave", 8, "-99.99,to,99.99", length},
        {"horizontalAcceleration", 1, "0,to,9.7665", horizontal},
        {"verticalAcceleration", 3, "-20.48,to,20.479375", vertical},
    };
    for (const auto& key : keys) {
        for (const row_t& row : key.rows) {
            SCOPED_TRACE(key.key + " " + row.text + row.options);
            const texts_t arguments = words("encode tss1 "s + row.options);
            const std::string whole = runTool(arguments, json).out;
            std::string changed;
            std::string fault;
            if (row.columns != nullptr) {
                changed =
                    std::string(whole).replace(key.begin, std::strlen(row.columns), row.columns);
            } else {
                fault = ":" + key.key + "," + row.text + "," + key.range;
            }
            const values_t values = with(key.key, row.text);
            const result_t lines = runTool(arguments, json + jsonOf(values) + json);
            EXPECT_EQ(lines.out, whole + changed + whole);
            expectFaults(lines, fault.empty() ? "" : "2" + fault);
            const result_t table = runTool(arguments, head + cells + cellsOf(values) + cells);
            EXPECT_EQ(table.out, whole + changed + whole);
            expectFaults(table, fault.empty() ? "" : "3" + fault);
        }
    }
}

struct row_t {
    const char* name;
    std::string input;
    int records; // all like the good one
    const char* faults;
};

void runRow(const row_t& row) {
    SCOPED_TRACE(row.name);
    const result_t result = runTool(words("encode tss1"), row.input);
    std::string expected;
    for (int i = 0; i < row.records; ++i) {
        expected += record;
    }
    EXPECT_EQ(result.out, expected);
    expectFaults(result, row.faults);
    const result_t bytewise = runTool(words("encode tss1"), row.input, 1);
    EXPECT_EQ(bytewise.out, result.out);
    EXPECT_EQ(bytewise.err, result.err);
}

const values_t reversed(good.rbegin(), good.rend());
const values_t untyped(good.begin() + 1, good.end());

TEST(encode, jsonLines) {
    const auto heaves = [](const texts_t& texts) {
        std::string lines;
        for (const std::string& text : texts) {
            lines += jsonOf(with("heave", text));
        }
        return lines;
    };
    const row_t rows[] = {
        {"nothing", "", 0, ""},
        {"keys in any order, no type", jsonOf(reversed) + jsonOf(untyped), 2, ""},
        {"nested, blanks, no line end",
         " " + replaced(jsonOf(with("further", R"([{ "roll":7},"\"\u00e9}"])")), "\n", ""), 1, ""},
        {"blank lines count", json + "\r\n \n" + jsonOf(with("roll", "100")), 1, "4:roll"},
        {"other types, among them none", jsonOf(with("type", "ATS")) + "{\"type\":null}\n" + json,
         1, ""},
        {"missing values", "{\"type\":\"TSS1\",\"roll\":1}\n" + replaced(json, "roll", "Roll"), 0,
         "1:missing 2:roll,missing"},
        {"an object of nothing", "{}\n" + json, 1, "1:missing"},
        {"no number", json + heaves({"\"x\"", "null", "true", "[1]", "\"1 2\""}), 1,
         "2:heave,x 3:heave 4:heave,true 5:heave 6:heave,1,2"},
        {"no JSON",
         json + "x\n[]\n5\n" + json.substr(0, 20) + "\n" + heaves({"NaN", "\"\xFF\""}) +
             std::string(1000, '[') + "\n" + json,
         2, "2:JSON 3:JSON 4:JSON 5:JSON 6:JSON 7:JSON 8:JSON"},
        {"too long", json + replaced(json, "{", "{" + std::string(65536, ' ')) + json, 2,
         "2:long 2:long"},
    };
    for (const row_t& row : rows) {
        runRow(row);
    }
}

TEST(encode, csv) {
    values_t quoted = reversed;
    quoted.insert(quoted.begin() + 3, {R"("a ""b"", c")", R"("x,""y""")"});
    const auto rolls = [](const texts_t& texts) {
        std::string lines = head;
        for (const std::string& text : texts) {
            lines += cellsOf(with("roll", text));
        }
        return lines + cells;
    };
    const row_t rows[] = {
        {"the head alone", head, 0, ""},
        {"a table", head + cells + "\r\n" + cells.substr(0, cells.size() - 1), 2, ""},
        {"another order, quotes", headOf(quoted) + cellsOf(quoted), 1, ""},
        {"no type", headOf(untyped) + cellsOf(untyped), 1, ""},
        {"quoted names and values", replaced(rolls({"\"1.05\""}), "roll", "\"roll\""), 2, ""},
        {"a quote that does not close", rolls({"\"1.05"}), 1, "2:quote"},
        {"other types, and an empty one",
         head + cellsOf(with("type", "ATS")) + cellsOf(with("type", "")), 1, ""},
        {"short and long rows", head + "TSS1,1.05\n" + replaced(cells, "U", "U,1") + cells, 1,
         "2:2,cells 3:9,cells"},
        {"empty cells", rolls({"", "\"\""}), 1, "2:roll,missing 3:roll,missing"},
        {"no such column", replaced(head, "roll", "rol") + cells, 0, "2:roll,missing"},
        {"no number", rolls({"x", "nan", "inf", "0x1", "1 ", "1e999"}), 1,
         "2:roll,x 3:roll,nan 4:roll,inf 5:roll,0x1 6:roll 7:roll,1e999"},
    };
    for (const row_t& row : rows) {
        runRow(row);
    }
}

TEST(encode, status) {
    for (const std::string letter : {"U", "u", "G", "g", "H", "h", "F", "f"}) {
        const result_t result = runTool(words("encode tss1"), jsonOf(with("status", letter)));
        EXPECT_EQ(result.out, replaced(record, "U", letter));
    }
    for (const char* wrong : {"X", "a", "UU", " ", "0", "", "\\u0000", "\\u00e9"}) {
        runRow({wrong, jsonOf(with("status", wrong)) + json, 1, "1:status"});
    }
}

TEST(encode, inputsAndUsage) {
    const std::string missing = testing::TempDir() + "kalo-no-such-file";
    const result_t result = runTool({"encode", "tss1", missing, "/", "-"}, json);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, record);
    EXPECT_EQ(result.err,
              "kalo: " + missing + ": No such file or directory\n" + "kalo: /: Is a directory\n");
    for (const char* arguments :
         {"encode", "encode tss2", "encode tss1 --raw", "encode --radians"}) {
        const result_t wrong = runTool(words(arguments), json);
        EXPECT_EQ(wrong.status, 2) << arguments;
        EXPECT_EQ(wrong.out, "") << arguments;
        EXPECT_NE(wrong.err, "") << arguments;
    }
    link_t terminal = makeTerminal();
    tool_t asked({"encode", "tss1"}, std::move(terminal.theirs));
    EXPECT_EQ(asked.wait().status, 2);
    // A live reader has each record when its line is complete.
    link_t link = makePipe();
    tool_t live({"encode", "tss1"}, std::move(link.theirs));
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(writeAll(link.ours, json));
        EXPECT_EQ(live.readLine(), record);
    }
}

} // namespace
