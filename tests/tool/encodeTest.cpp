// `kalo encode tss1`: what `kalo decode` prints goes back to the same bytes, and no value that a
// record cannot hold goes through.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/tool/runTool.h"
#include "tests/tool/toolOutput.h"

namespace {

using namespace std::string_literals;

const std::string record = ":00FF80 -0120U 0105 -0150\r\n";
const std::string json = R"({"type":"TSS1","roll":1.05,"pitch":-1.5,"heave":-1.2,"status":"U",)"
                         R"("horizontalAcceleration":0,"more":1,"verticalAcceleration":-0.08})"
                         "\n";
const std::string head =
    "type,roll,pitch,heave,status,horizontalAcceleration,more,verticalAcceleration\n";
const std::string cells = "TSS1,1.05,-1.5,-1.2,U,0,1,-0.08\n";

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.find(from), from.size(), to);
}
std::string roll(const std::string& text) { return replaced(json, "1.05", text); }
std::string cell(const std::string& text) { return replaced(cells, "1.05", text); }

// Expects the complaints "line:part; part", one a line with " | " between.
void expectRun(const std::string& input, const std::string& out, const std::string& faults,
               const std::string& options = {}) {
    SCOPED_TRACE(input.substr(0, 1000));
    const texts_t arguments = words("encode tss1 " + options);
    const result_t result = runTool(arguments, input);
    EXPECT_EQ(result.out, out);
    EXPECT_EQ(result.status, faults.empty() ? 0 : 1);
    std::istringstream errors(result.err);
    std::string error;
    std::string left = faults;
    while (!left.empty()) {
        const std::string fault = left.substr(0, left.find(" | "));
        left.erase(0, fault.size() + 3);
        EXPECT_TRUE(std::getline(errors, error)) << "no error in " << fault;
        const std::size_t colon = fault.find(':');
        EXPECT_EQ(error.rfind("kalo: -: line " + fault.substr(0, colon + 1) + " ", 0), 0) << error;
        expectParts(error, fault.substr(colon + 1));
    }
    EXPECT_FALSE(std::getline(errors, error)) << error;
    const result_t bytewise = runTool(arguments, input, 1);
    EXPECT_EQ(bytewise.out, result.out);
    EXPECT_EQ(bytewise.err, result.err);
}

// Every count of every column, with each status and in many combinations.
TEST(encode, givesBackWhatWasDecoded) {
    std::string input;
    for (int i = 0; i < 65536; ++i) {
        const auto count = [&](int step) { return i * step % 19999 - 9999; };
        const auto sign = [&](int step) { return count(step) < 0 ? '-' : ' '; };
        char text[64];
        static_cast<void>(std::snprintf(text, sizeof text, ":%02X%04X %c%04d%c%c%04d %c%04d\r\n",
                                        i * 7 % 256, i, sign(1), std::abs(count(1)),
                                        "UuGgHhFf"[i % 8], sign(3), std::abs(count(3)), sign(5),
                                        std::abs(count(5))));
        input += text;
    }
    for (const std::string options : {"", " --radians"}) {
        const result_t decoded = runTool(words("decode --quiet" + options), input);
        const result_t encoded = runTool(words("encode tss1" + options), decoded.out);
        EXPECT_EQ(encoded.err, "");
        EXPECT_EQ(encoded.status, 0);
        ASSERT_EQ(encoded.out.size(), input.size()) << options;
        EXPECT_TRUE(encoded.out == input) << options;
    }
}

// One value in the place of the good one, in both forms: the columns that it gives, or an error
// that names it and its range.
TEST(encode, values) {
    const std::string lengths = "99.99=_9999 -99.99=-9999 99.996 -99.996 100 1e+300 -1e+300 "
                                "1.0549=_0105 1.0551=_0106 -1.0549=-0105 -1.0551=-0106 -0.0=_0000";
    const std::string angles = "0.1=_0573 -0.1=-0573 1.7451=_9999 -1.7451=-9999 1.7454 -1.7454";
    const struct {
        const char* key;
        const char* good;
        std::size_t begin; // of its columns
        const char* range;
        std::string values; // text=columns with _ for a blank, or the text of one out of range
        const char* options = "";
    } rows[] = {
        {"roll", "1.05", 14, "-99.99 to 99.99", lengths},
        {"pitch", "-1.5", 20, "-99.99 to 99.99", lengths},
        {"heave", "-1.2", 8, "-99.99 to 99.99", lengths},
        {"roll", "1.05", 14, "-99.99 to 99.99", angles, "--radians"},
        {"pitch", "-1.5", 20, "-99.99 to 99.99", angles, "--radians"},
        {"heave", "-1.2", 8, "-99.99 to 99.99", "1.7454=_0175", "--radians"},
        {"horizontalAcceleration", "0", 1, "0 to 9.7665",
         "9.7665=FF 9.79 9.8048 1e+300 -0.01 -1e+300 -0.0=00 0.019=00 0.02=01 0.057=01 0.058=02"},
        {"verticalAcceleration", "-0.08", 3, "-20.48 to 20.479375",
         "20.479375=7FFF -20.48=8000 20.48 -20.480625 1e+300 -1e+300 -0.000625=FFFF -0.0=0000 "
         "0.0003=0000 -0.0003=0000 0.0004=0001 -0.0004=FFFF 0.0009=0001 0.001=0002 -0.001=FFFE"},
    };
    for (const auto& row : rows) {
        const std::string options = row.options;
        const std::string whole = runTool(words("encode tss1 " + options), json).out;
        for (const std::string& value : words(row.values)) {
            const std::string text = value.substr(0, value.find('='));
            const std::string columns = value.substr(std::min(text.size() + 1, value.size()));
            std::string out;
            std::string fault;
            if (columns.empty()) {
                fault = ":"s + row.key + "; " + text + "; " + row.range;
            } else {
                out = std::string(whole).replace(row.begin, columns.size(), columns);
                std::replace(out.begin(), out.end(), '_', ' ');
            }
            const std::string named = "\""s + row.key + "\":";
            expectRun(json + replaced(json, named + row.good, named + text) + json,
                      whole + out + whole, fault.empty() ? "" : "2" + fault, options);
            const std::string table = replaced("," + cells, ","s + row.good, "," + text).substr(1);
            expectRun(head + cells + table, whole + out, fault.empty() ? "" : "3" + fault, options);
        }
    }
}

TEST(encode, jsonLines) {
    expectRun("", "", "");
    expectRun(R"({"verticalAcceleration":-0.08,"heave":-1.2,"horizontalAcceleration":0,"pitch":)"
              R"(-1.5, "status":"U","roll":"1.05","x":[{ "roll":7},"\"\u00e9}"]})",
              record, ""); // any order, no type, something nested, no line end
    expectRun(json + "\r\n \n" + roll("100"), record, "4:roll"); // blank lines count
    expectRun(replaced(json, "TSS1", "ATS") + "{\"type\":null}\n" + json, record, "");
    expectRun("{\"type\":\"TSS1\",\"roll\":1}\n" + replaced(json, "roll", "Roll") + "{}\n", "",
              "1:missing | 2:roll; missing | 3:missing");
    expectRun(json + roll("\"x\"") + roll("null") + roll("true") + roll("[1]") + roll("\"1 2\""),
              record, "2:roll; x | 3:roll | 4:roll; true | 5:roll | 6:roll; 1 2");
    expectRun(json + "x\n[]\n5\n" + json.substr(0, 20) + "\n" + roll("NaN") + roll("\"\xFF\"") +
                  std::string(1000, '[') + "\n" + json,
              record + record, "2:JSON | 3:JSON | 4:JSON | 5:JSON | 6:JSON | 7:JSON | 8:JSON");
    expectRun(json + replaced(json, "{", "{" + std::string(65536, ' ')) + json, record + record,
              "2:longer than 64 KiB");
    for (const std::string letter : {"U", "u", "G", "g", "H", "h", "F", "f"}) {
        expectRun(replaced(json, "U", letter), replaced(record, "U", letter), "");
    }
    for (const char* wrong : {"X", "a", "UU", " ", "0", "", "\\u0000", "\\u00e9"}) {
        expectRun(replaced(json, "U", wrong) + json, record, "1:status");
    }
}

TEST(encode, csv) {
    expectRun(head, "", "");
    expectRun(head + cells + "\r\n" + cells.substr(0, cells.size() - 1), record + record, "");
    expectRun("verticalAcceleration,heave,horizontalAcceleration,\"a \"\"b\"\", c\",pitch,status,"
              "\"roll\"\n-0.08,-1.2,0,\"x,\"\"y\"\"\",-1.5,U,\"1.05\"\n",
              record, "");
    expectRun(head + cell("\"1.05") + cells, record, "2:quote");
    expectRun(head + replaced(cells, "TSS1", "ATS") + replaced(cells, "TSS1", ""), record, "");
    expectRun(head + "TSS1,1.05\n" + replaced(cells, "U", "U,1") + cells, record,
              "2:2; columns | 3:9; columns");
    expectRun(head + cell("") + cell("\"\""), "", "2:roll; missing | 3:roll; missing");
    expectRun(replaced(head, "roll", "rol") + cells, "", "2:roll; missing");
    expectRun(head + cell("x") + cell("nan") + cell("inf") + cell("0x1") + cell("\"1\"\"2\"") +
                  cell("1e999"),
              "", "2:roll; x | 3:nan | 4:inf | 5:0x1 | 6:1\"2 | 7:1e999");
}

TEST(encode, inputs) {
    const std::string missing = testing::TempDir() + "kalo-no-such-file";
    const result_t result = runTool({"encode", "tss1", missing, "/", "-"}, json);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, record);
    EXPECT_EQ(result.err,
              "kalo: " + missing + ": No such file or directory\nkalo: /: Is a directory\n");
    // A live reader has each record when its line is complete.
    const link_t link = makePipe();
    tool_t live({"encode", "tss1"}, link.theirs);
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(link.ours.write(json));
        EXPECT_EQ(live.readLine(), record);
    }
}

} // namespace
