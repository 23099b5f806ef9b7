// Nothing is lost, nothing invented: the records of an input tile it, over recordings and over
// random pieces of lines.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <random>

#include <gtest/gtest.h>

#include "tests/tool/runTool.h"
#include "tests/tool/toolOutput.h"

namespace {

using namespace std::string_literals;

std::vector<json_t> decodeWhole(const std::string& input, std::size_t chunk = 32768) {
    const result_t result = runTool({"decode", "--raw", "--quiet"}, input, chunk);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    return readRecords(result.out, input);
}

// Whether `text` has a "*hh" that is right for what stands in front of it.
bool holdsGood(std::string_view text) {
    for (std::size_t star = text.find('*'); star < text.size(); star = text.find('*', star + 1)) {
        std::string digits(text.substr(star + 1, 2));
        std::transform(digits.begin(), digits.end(), digits.begin(), toupper);
        if (digits == checksumOf(text.substr(0, star))) {
            return true;
        }
    }
    return false;
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

// Where the first sentence of a line starts. Start characters in front of one are its prefix; at
// the beginning of a line one is enough, if what may be its address is printable.
std::size_t findFirstStart(std::string_view line) {
    const std::size_t start = findStart(line, 0);
    const std::string_view address = line.substr(0, line.find_first_of(",*"));
    const bool isPrintable =
        std::all_of(address.begin(), address.end(), [](char c) { return c >= ' ' && c <= '~'; });
    const bool begins = !line.empty() && (line[0] == '$' || line[0] == '!');
    return begins && isPrintable && start != line.find_first_not_of("$!") - 1 ? 0 : start;
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
            // A line that is too long is not looked into.
            const std::string error = record->value("error", "line too long");
            anyGood = anyGood || error == "line too long";
            EXPECT_TRUE(!record->contains("checksum") || end - begin == 1) << *record;
            for (std::size_t i = 0, next = 0;
                 error != "line too long" && (i = findStart(raw, i)) != raw.npos; i = next) {
                next = findStart(raw, i + 1);
                EXPECT_FALSE(holdsGood(raw.substr(i, next - i))) << *record;
            }
        }
        const std::string received = begin->value("received", "");
        line.erase(0, received.empty() ? 0 : received.size() + 1);
        const std::size_t start = findFirstStart(line);
        EXPECT_TRUE(anyGood || start == line.npos || !holdsGood(line.substr(start))) << line;
    }
}

TEST(tiling, recordings) {
    const char* outside = std::getenv("KALO_RECORDINGS");
    std::size_t files = 0;
    for (const std::string folder :
         {KALO_EXAMPLES "/recordings", outside ? outside : "/dev/null"}) {
        std::error_code none;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, none)) {
            if (entry.is_regular_file() && entry.path().extension() != ".md") {
                SCOPED_TRACE(entry.path().string());
                const std::string input = contentOf(entry.path());
                const std::vector<json_t> records = decodeWhole(input);
                expectTiling(records, input);
                expectNothingLost(records);
                ++files;
            }
        }
    }
    if (outside == nullptr) {
        GTEST_SKIP() << "SKIPPED: recordings of real devices, KALO_RECORDINGS names no folder";
    }
    EXPECT_GT(files, 50);
    const std::string receivers = outside + "/receivers/"s;
    const auto firstOf = [](const std::string& input, const char* text) {
        const std::size_t begin = input.rfind('\n', input.find(text)) + 1;
        return input.substr(begin, input.find_first_of("\r\n", begin) - begin);
    };
    const std::string gsa = "$GPGSA,A,1,,,,,,,,,,,,,,,*1E";
    const std::string rmc = "$GPRMC,235949.00,V,0000.0000,N,00000.0000,E,,,161206,,,N*44";
    expectRecords({
        {"",
         firstOf(contentOf(receivers + "gp-320fw-2019-04-07-coldboot.log"), (gsa + rmc).c_str()),
         "type=GSA offset=0 | type=RMC offset=" + std::to_string(gsa.size())},
        {"", firstOf(contentOf(receivers + "st-teseo-liv4f.log"), "$$"),
         "prefix=$ type=GSA offset=0"},
    });
}

// Fragments of lines in a row, and now and then the checksum of what stands behind some start.
std::string randomLines(std::mt19937& random, std::size_t fragments) {
    const texts_t kinds[] = {
        words("$GPGGA $GPXYZ, !AIVDM, $ $$ ! , , 1 4807.038,N * *00 *7f *ZZ AB noise \\ :"),
        {"\n", "\n", "\r", "\r\n", "\r\r\n", "\n\n", " ", "\t", "\0"s, "\xFF", "\xC3\xA9"},
        {"2014-08-01T00:00:00Z ", "\n2014-08-01 00:00:00.5+01:00,"},
        words(
            withChecksums("<$GPGGA,120000.0,4807.038,N> <$GPXYZ,1> <!AIVDM,1~> <$GPXYZ,$GPXYZ,1>")),
    };
    texts_t pool;
    for (const texts_t& kind : kinds) {
        pool.insert(pool.end(), kind.begin(), kind.end());
    }
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
        EXPECT_EQ(decodeWhole(input, 1 + random() % 50), records);
    }
}

} // namespace
