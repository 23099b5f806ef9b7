#include "tests/tool/toolOutput.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <regex>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/tool/runTool.h"

namespace {

// The order of the keys; what is not listed is a value and stands at the empty one.
const texts_t order = {"source", "line",   "offset",   "received", "prefix",  "type",
                       "talker", "time",   "",         "checksum", "address", "fields",
                       "error",  "stated", "computed", "raw"};

void checkRecord(const json_t& record, std::string_view input) {
    const auto values = std::find(order.begin(), order.end(), "");
    auto next = order.begin(); // where the next key may stand
    for (const auto& member : record.items()) {
        const auto known = std::find(order.begin(), order.end(), member.key());
        const auto place = known == order.end() ? values : known;
        EXPECT_TRUE(place >= next) << member.key() << " is out of order in " << record;
        next = place == values ? place : place + 1;
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

std::string textOf(const json_t& record, const std::string& key) {
    if (key == "sats") {
        return std::to_string(record.at("satellites").size());
    }
    const json_t value = record.value(key, json_t(""));
    std::string text = value.is_string() ? std::string(value) : value.dump();
    if (value.is_array()) {
        text.erase(std::remove(text.begin(), text.end(), '"'), text.end());
    }
    return text;
}

// What `pattern` leaves of a text.
texts_t split(const std::string& text, const char* pattern) {
    const std::regex between(pattern);
    return {std::sregex_token_iterator(text.begin(), text.end(), between, -1), {}};
}

} // namespace

void expectParts(const std::string& text, const std::string& parts) {
    for (const std::string& part : split(parts, "; ")) {
        EXPECT_NE(text.find(part), text.npos) << part << " is not in " << text;
    }
}

void expectRecords(const std::vector<row_t>& rows) {
    for (const row_t& row : rows) {
        const std::string input = withChecksums(row.input);
        SCOPED_TRACE(row.options + ": " + input.substr(0, 300));
        const bool quiet = *row.closing == '\0';
        const texts_t arguments = words("decode " + row.options + (quiet ? " --quiet" : ""));
        const result_t result = runTool(arguments, input);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), quiet ? 0 : 1);
        expectParts(result.err, row.closing);
        const std::vector<json_t> records = readRecords(result.out, input);
        const texts_t expected = split(withChecksums(row.records), " \\| ");
        EXPECT_EQ(records.size(), row.records.empty() ? 0 : expected.size()) << result.out;
        for (std::size_t i = 0; i < std::min(records.size(), expected.size()); ++i) {
            for (const std::string& word : split(expected[i], " (?=[A-Za-z]+=)")) {
                const std::string key = word.substr(0, word.find('='));
                EXPECT_EQ(key + "=" + textOf(records[i], key), word) << records[i];
            }
        }
        if (row.options.find("--raw") != std::string::npos) {
            expectTiling(records, input);
        }
        // What a read returns is decoded at once; where the input is cut does not matter.
        EXPECT_EQ(runTool(arguments, input, 1).out, result.out);
    }
}

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
    EXPECT_TRUE(output.empty() || output.back() == '\n') << "the last line has no end";
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        records.push_back(json_t::parse(line));
        checkRecord(records.back(), input);
    }
    return records;
}

void expectTiling(const std::vector<json_t>& records, std::string_view input) {
    static const std::regex lineEnd("\r*\n|\r");
    std::size_t done = 0;
    std::size_t line = 1;
    // What no record covers begins and ends with a line end, or at an end of the input.
    const auto passGap = [&](std::size_t end) {
        const std::string gap(input.substr(done, end - done));
        const bool begun = done == 0 || gap.empty() || gap.find_first_of("\r\n") == 0;
        const bool ended = end == input.size() || gap.find_last_of("\r\n") + 1 == gap.size();
        EXPECT_TRUE(begun && ended && gap.find_first_not_of(" \t\r\n") == gap.npos)
            << "no record has \"" << gap << "\" at " << done;
        line += static_cast<std::size_t>(
            std::distance(std::sregex_iterator(gap.begin(), gap.end(), lineEnd), {}));
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

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}
