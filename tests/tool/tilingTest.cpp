// Nothing is lost, nothing invented: the records of an input tile it, over recordings and over
// random pieces of lines.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

#include <gtest/gtest.h>

#include "tests/tool/runTool.h"
#include "tests/tool/toolOutput.h"

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

using texts_t = std::vector<std::string>;

std::string contentOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<json_t> decodeWhole(const std::string& input, std::size_t chunk = 0) {
    const result_t result = runTool({"decode", "--raw", "--quiet"}, input, chunk);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    return readRecords(result.out, input);
}

bool isChecksum(std::string_view text, std::size_t star) {
    std::string digits(text.substr(star + 1, 2));
    for (char& digit : digits) {
        digit = static_cast<char>(std::toupper(static_cast<unsigned char>(digit)));
    }
    return digits == checksumOf(text.substr(0, star));
}

// The length of `text` with its checksum at the end, else up to the first "*hh" that is right for
// what stands in front of it; else 0.
std::size_t goodLength(std::string_view text) {
    if (text.size() > 3 && text[text.size() - 3] == '*' && isChecksum(text, text.size() - 3)) {
        return text.size();
    }
    for (std::size_t star = text.find('*'); star < text.size(); star = text.find('*', star + 1)) {
        if (isChecksum(text, star)) {
            return star + 3;
        }
    }
    return 0;
}

// Where a sentence starts in `text`, from `from` on.
std::size_t findStart(std::string_view text, std::size_t from) {
    for (std::size_t i = from; i < text.size(); ++i) {
        const std::size_t end =
            text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789", i + 1);
        if ((text[i] == '$' || text[i] == '!') && end < text.size() && text[end] == ',' &&
            end - i > 4 && text[i + 1] >= 'A') {
            return i;
        }
    }
    return text.npos;
}

// In a line of several records a sentence is one by its checksum; no other record holds a piece
// that is one, and a line of no sentence is not one as a whole.
void expectNothingLost(const std::vector<json_t>& records) {
    for (auto begin = records.begin(), end = begin; begin != records.end(); begin = end) {
        end = std::find_if(begin, records.end(), [&](const json_t& record) {
            return record["line"] != (*begin)["line"];
        });
        std::string line;
        bool anyGood = false;
        for (auto record = begin; record != end; ++record) {
            const std::string raw = unescape(record->value("raw", ""));
            line += raw;
            if (!record->contains("error")) {
                anyGood = true;
                EXPECT_TRUE(!record->contains("checksum") || line.size() == raw.size()) << *record;
                EXPECT_TRUE(!record->contains("checksum") || std::next(record) == end) << *record;
                continue;
            }
            if ((*record)["error"] == "line too long") {
                anyGood = true; // not looked into
                continue;
            }
            for (std::size_t i = 0, next = 0; (i = findStart(raw, i)) != raw.npos; i = next) {
                next = findStart(raw, i + 1);
                EXPECT_EQ(goodLength(raw.substr(i, next - i)), 0) << *record;
            }
        }
        const std::string received = begin->value("received", "");
        line.erase(0, received.empty() ? 0 : received.size() + 1);
        const bool atOnce = !line.empty() && (line[0] == '$' || line[0] == '!');
        const std::size_t start = atOnce ? 0 : findStart(line, 0);
        EXPECT_TRUE(anyGood || start == line.npos || goodLength(line.substr(start)) == 0) << line;
    }
}

texts_t fieldsOf(const std::string& sentence) {
    texts_t fields(1);
    for (const char c : sentence.substr(0, goodLength(sentence) - 3)) {
        if (c == ',') {
            fields.emplace_back();
        } else {
            fields.back() += c;
        }
    }
    fields.resize(std::max<std::size_t>(fields.size(), 15));
    return fields;
}

void expectNumber(const json_t& record, const char* key, const std::string& text, double value) {
    const bool sent = !text.empty() && text.find_first_not_of("0123456789.-") == text.npos;
    ASSERT_EQ(record.contains(key), sent) << key << " of " << record;
    if (sent) {
        EXPECT_NEAR(record[key].get<double>(), value, 1e-12 * std::abs(value))
            << key << " of " << record;
    }
}

double numberOf(const std::string& text) { return std::strtod(text.c_str(), nullptr); }

double degrees(const std::string& text, const std::string& side) {
    const double whole = std::floor(numberOf(text) / 100);
    return (whole + (numberOf(text) - whole * 100) / 60) * (side == "S" || side == "W" ? -1 : 1);
}

void expectValues(const json_t& record, const texts_t& fields) {
    const std::string& time = fields[1];
    ASSERT_EQ(record.value("timeOfDay", ""),
              time.empty() ? ""
                           : time.substr(0, 2) + ":" + time.substr(2, 2) + ":" + time.substr(4));
    const auto angle = [&](const char* key, const std::string& text, const std::string& side) {
        expectNumber(record, key, side.empty() ? "" : text, degrees(text, side));
    };
    angle("latitude", fields[2], fields[3]);
    angle("longitude", fields[4], fields[5]);
    expectNumber(record, "quality", fields[6], numberOf(fields[6]));
    expectNumber(record, "satCount", fields[7], numberOf(fields[7]));
    expectNumber(record, "altitude", fields[10].empty() ? "" : fields[9], numberOf(fields[9]));
}

// Looks for the GGA sentences of the input in its own way, and expects a record of each and, with
// `values`, its values. Returns how many there are.
std::size_t expectGga(const std::vector<json_t>& records, std::string_view input, bool values) {
    std::size_t count = 0;
    auto record = records.begin();
    for (std::size_t i = 0; (i = findStart(input, i)) != input.npos; ++i) {
        std::string_view line = input.substr(i);
        line = line.substr(0, line.find_first_of("\r\n"));
        const std::size_t length = goodLength(line.substr(0, findStart(line, 1)));
        if (length == 0 || line[1] == 'P' || line.substr(line.find(',') - 3, 3) != "GGA") {
            continue;
        }
        record = std::find_if(record, records.end(), [&](const json_t& candidate) {
            return candidate.contains("offset") &&
                   i < candidate["offset"].get<std::size_t>() + unescape(candidate["raw"]).size();
        });
        if (record == records.end() || (*record)["type"] != "GGA") {
            ADD_FAILURE() << "no record of " << line;
            return count;
        }
        if (values) {
            expectValues(*record, fieldsOf(std::string(line.substr(0, length))));
        }
        ++count;
    }
    return count;
}

std::size_t checkFolder(const fs::path& folder, std::size_t& ggaCount) {
    std::size_t files = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        const std::string name = entry.path().filename();
        if (!entry.is_regular_file() || name.rfind("LICENSE", 0) == 0 ||
            name.rfind("README", 0) == 0) {
            continue;
        }
        SCOPED_TRACE(entry.path().string());
        const std::string input = contentOf(entry.path());
        const std::vector<json_t> records = decodeWhole(input);
        expectTiling(records, input);
        expectNothingLost(records);
        ggaCount += expectGga(records, input, true);
        ++files;
    }
    return files;
}

TEST(tiling, examples) {
    std::size_t ggaCount = 0;
    EXPECT_GT(checkFolder(KALO_EXAMPLES "/recordings", ggaCount), 0);
    EXPECT_GT(ggaCount, 0);
}

class recordings_t : public testing::Test {
protected:
    void SetUp() override {
        const char* folder = std::getenv("KALO_RECORDINGS");
        if (folder == nullptr) {
            GTEST_SKIP() << "\n*** KALO_RECORDINGS names no folder: NOTHING WAS CHECKED AGAINST "
                            "REAL RECORDINGS ***\n";
        }
        m_folder = folder;
    }

    fs::path m_folder;
};

TEST_F(recordings_t, tile) {
    std::size_t ggaCount = 0;
    EXPECT_GT(checkFolder(m_folder, ggaCount), 50);
    EXPECT_GT(ggaCount, 1000);
}

TEST_F(recordings_t, joinedLines) {
    const struct {
        const char* file;
        std::size_t line;
        texts_t sentences;
    } rows[] = {
        {"gp-320fw-2019-04-07-coldboot.log",
         20,
         {"$GPGSA,A,1,,,,,,,,,,,,,,,*1E",
          "$GPRMC,235949.00,V,0000.0000,N,00000.0000,E,,,161206,,,N*44"}},
        {"st-teseo-liv4f.log", 1, {"$", "$GNGSA,A,3,44,34,25,11,19,23,38,,,,,,2.5,1.7,1.8,4*3E"}},
    };
    for (const auto& row : rows) {
        texts_t found;
        for (const json_t& record : decodeWhole(contentOf(m_folder / "receivers" / row.file))) {
            if (record["line"] == row.line && record.contains("raw")) {
                found.push_back(record["raw"]);
                EXPECT_EQ(record["type"].is_null(), found.back() == "$") << record;
                EXPECT_EQ(record.contains("error"), found.back() == "$") << record;
            }
        }
        EXPECT_EQ(found, row.sentences) << row.file;
    }
}

// Fragments of lines in a row, and now and then the checksum of what stands behind some start.
std::string randomLines(std::mt19937& random, std::size_t fragments) {
    const texts_t pool = {
        "$GPGGA",
        "$GPXYZ,",
        "!AIVDM,",
        "$",
        "$$",
        "!",
        ",",
        ",",
        "1",
        "4807.038,N",
        "*",
        "*00",
        "*7f",
        "*ZZ",
        "AB",
        "\n",
        "\r",
        "\r\n",
        "\r\r\n",
        "\n\n",
        " ",
        "\t",
        "\\",
        "\0"s,
        "\xFF",
        "\xC3\xA9",
        "noise",
        "2014-08-01T00:00:00Z ",
        "\n2014-08-01 00:00:00.5+01:00,",
        ":",
        "\n",
        withChecksums("<$GPGGA,120000.0,4807.038,N,01131.0,E,1,8,0.9,5.4,M>"),
        withChecksums("<$GPXYZ,1>"),
        withChecksums("<!AIVDM,1,2~>"),
        withChecksums("<$GPXYZ,$GPXYZ,1>"),
    };
    const auto below = [&](std::size_t count) { return random() % count; };
    std::string text;
    for (std::size_t i = 0; i < fragments; ++i) {
        if (below(8) > 0) {
            text += pool[below(pool.size())];
            continue;
        }
        std::size_t start = text.find_last_of("$!\r\n");
        while (start != text.npos && start > 0 && below(3) == 0) {
            start = text.find_last_of("$!\r\n", start - 1);
        }
        if (start != text.npos && (text[start] == '$' || text[start] == '!')) {
            text += "*" + checksumOf(std::string_view(text).substr(start));
        }
    }
    return text;
}

TEST(tiling, randomLines) {
    std::mt19937 random(20140801); // NOLINT(cert-msc32-c,cert-msc51-cpp) the same in each run
    for (int run = 0; run < 12; ++run) {
        SCOPED_TRACE(run);
        const std::string input = randomLines(random, 12000);
        const std::vector<json_t> records = decodeWhole(input);
        EXPECT_GT(records.size(), 2000);
        expectTiling(records, input);
        expectNothingLost(records);
        EXPECT_GT(expectGga(records, input, false), 50);
        EXPECT_EQ(decodeWhole(input, 1 + random() % 50), records);
    }
}

} // namespace
