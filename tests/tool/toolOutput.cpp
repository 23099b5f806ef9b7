#include "tests/tool/toolOutput.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <stdexcept>

#include <gtest/gtest.h>

namespace {

constexpr std::array head{"source", "line", "offset", "received",
                          "prefix", "type", "talker", "time"};
constexpr std::array tail{"checksum", "address", "fields", "error", "stated", "computed", "raw"};
constexpr int values = head.size(); // the rank of the values, which stand between the two lists

// Where a key stands in a record.
int rankOf(const std::string& key) {
    const auto inHead = std::find(head.begin(), head.end(), key);
    const auto inTail = std::find(tail.begin(), tail.end(), key);
    return static_cast<int>(inTail == tail.end() ? inHead - head.begin()
                                                 : inTail - tail.begin() + values + 1);
}

void checkRecord(const json_t& record, std::string_view input) {
    int last = -1;
    for (const auto& member : record.items()) {
        const int rank = rankOf(member.key());
        EXPECT_TRUE(rank > last || (rank == last && rank == values))
            << member.key() << " is out of order in " << record;
        last = rank;
    }
    EXPECT_TRUE(record.contains("type")) << record;
    EXPECT_TRUE(record.contains("raw") || !record.contains("error")) << record;
    if (record.contains("raw")) {
        const std::string raw = unescape(record["raw"]);
        const std::size_t offset = record.at("offset");
        EXPECT_FALSE(raw.empty()) << record;
        EXPECT_EQ(raw, input.substr(std::min(offset, input.size()), raw.size())) << record;
    }
}

bool isLineEnd(char c) { return c == '\r' || c == '\n'; }

// LF, CR, and a run of CR followed by LF are one line end each.
std::size_t countLineEnds(std::string_view text) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t behind = std::min(text.find_first_not_of('\r', i), text.size());
        if (behind > i && behind < text.size() && text[behind] == '\n') {
            i = behind;
        }
        count += isLineEnd(text[i]) ? 1 : 0;
    }
    return count;
}

} // namespace

std::string checksumOf(std::string_view body) {
    unsigned sum = 0;
    for (const char c : body.substr(1)) {
        sum ^= static_cast<unsigned char>(c);
    }
    char digits[3];
    static_cast<void>(std::snprintf(digits, sizeof digits, "%02X", sum & 0xFF));
    return digits;
}

std::string withChecksums(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '<') {
            result += text[i];
            continue;
        }
        const std::size_t end = text.find('>', i);
        std::string_view body = text.substr(i + 1, end - i - 1);
        const bool wrong = body.back() == '~';
        body.remove_suffix(wrong ? 1 : 0);
        // Bit 0 of the first character flipped flips it in the sum too.
        std::string summed(body);
        summed[1] = static_cast<char>(summed[1] ^ (wrong ? 1 : 0));
        result.append(body).append("*").append(checksumOf(summed));
        i = end;
    }
    return result;
}

std::string unescape(const std::string& text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            bytes += text[i];
        } else if (text.compare(i, 2, "\\\\") == 0) {
            bytes += text[++i];
        } else if (text.compare(i, 2, "\\x") == 0) {
            bytes += static_cast<char>(std::stoi(text.substr(i + 2, 2), nullptr, 16));
            i += 3;
        } else {
            throw std::runtime_error("a lone backslash in " + text);
        }
    }
    return bytes;
}

std::vector<json_t> readRecords(const std::string& output, std::string_view input) {
    std::vector<json_t> records;
    for (std::size_t begin = 0, end = 0; begin < output.size(); begin = end + 1) {
        end = std::min(output.find('\n', begin), output.size());
        EXPECT_LT(end, output.size()) << "the last line has no end";
        records.push_back(json_t::parse(output.substr(begin, end - begin)));
        checkRecord(records.back(), input);
    }
    return records;
}

void expectTiling(const std::vector<json_t>& records, std::string_view input) {
    std::size_t done = 0;
    std::size_t line = 1;
    // What no record covers begins and ends with a line end, or at an end of the input.
    const auto passGap = [&](std::size_t end) {
        const std::string_view gap = input.substr(done, end - done);
        const bool begun = done == 0 || gap.empty() || isLineEnd(gap.front());
        const bool ended = end == input.size() || gap.empty() || isLineEnd(gap.back());
        EXPECT_TRUE(begun && ended && gap.find_first_not_of(" \t\r\n") == gap.npos)
            << "no record has \"" << gap << "\" at " << done;
        line += countLineEnds(gap);
    };
    for (const json_t& record : records) {
        if (!record.contains("offset")) {
            EXPECT_EQ(record["type"], "SATELLITES") << record;
            continue;
        }
        const std::size_t offset = record["offset"];
        ASSERT_TRUE(offset >= done && offset < input.size()) << record << " overlaps";
        passGap(offset);
        EXPECT_EQ(record["line"], line) << record;
        const std::string raw = unescape(record.at("raw"));
        EXPECT_EQ(raw.find_first_of("\r\n"), std::string::npos) << record;
        done = offset + raw.size();
    }
    passGap(input.size());
}
