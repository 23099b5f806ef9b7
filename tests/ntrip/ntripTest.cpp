#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "kalo/ntrip/ntripRecordType.h"
#include "kalo/ntrip/ntripStreamDecoder.h"
#include "tests/sentence.h"

namespace {

using kalo::ntripRecordDecoder_t;
using kalo::ntripStreamDecoder_t;
using texts_t = std::vector<std::string>;

const auto tableLines =
    split("7:SOURCETABLE 200 OK\r\n|1:Server: a caster\r\n|6:Content-Type: text/plain\r\n|"
          "6:Content-Length: 99\r\n|6:\r\n|2:STR;M;I;F;D;2;G;N;DEU;1;2;1;0;g;n;B;N;96;\r\n|"
          "3:CAS;h;2101\r\n|4:NET;n;o\n|5:ENDSOURCETABLE\r\n");
const std::string sourcetable = [] {
    std::string table;
    for (const std::string& line : tableLines) {
        table += line.substr(2);
    }
    return table;
}();

// The type and length of the first line, from memory of exactly that size.
std::string typeOf(const std::string& text, unsigned& length) {
    const std::vector<char> bytes(text.begin(), text.end());
    length = static_cast<unsigned>(bytes.size());
    return std::to_string(kalo::decodeNtripRecordType(bytes.data(), length)) + ":";
}

// Reads line by line what arrives in pieces that end at the `cuts`.
texts_t linesOf(const std::vector<std::size_t>& cuts) {
    texts_t lines;
    std::size_t begin = 0;
    for (const std::size_t cut : cuts) {
        unsigned length = 0;
        std::string type;
        while (type = typeOf(sourcetable.substr(begin, cut - begin), length), length > 0) {
            lines.push_back(type + sourcetable.substr(begin, length));
            begin += length;
        }
        EXPECT_EQ(type, "7:");
    }
    return lines;
}

TEST(ntripRecordType, cutsDoNotMatter) {
    std::vector<std::size_t> everywhere;
    for (std::size_t cut = 0; cut <= sourcetable.size(); ++cut) {
        EXPECT_EQ(linesOf({cut, sourcetable.size()}), tableLines) << cut;
        everywhere.push_back(cut);
    }
    EXPECT_EQ(linesOf(everywhere), tableLines);
}

TEST(ntripRecordType, tellsLinesApart) {
    const std::string x512(512, 'x');
    const auto result = [](const std::string& bytes) {
        unsigned length = 0;
        const std::string type = typeOf(bytes, length);
        return type + std::to_string(length) + ' ';
    };
    EXPECT_EQ(result("STR;X;Y\r\nmore\n") + result(std::string("CAS;\0\n", 6)), "2:9 3:6 ");
    EXPECT_EQ(result("ENDSOURCETABLES\n") + result("\r\nSTR;\n"), "5:16 6:2 ");
    for (const std::string& line : split("STR\n;;| STR;\n;|str;\nSTR|\r\r\n\r|ENDSOURCETABL\nE|"
                                         "Server:\n ;|server: x\n|Content-Type:\n|\n\r\n")) {
        EXPECT_EQ(result(line), "7:" + std::to_string(line.find('\n') + 1) + ' ') << line;
    }
    EXPECT_EQ(result("") + result("NET;x\r") + result(x512), "7:0 7:0 7:0 ");
    EXPECT_EQ(result(x512 + "x") + result("CAS;" + x512), "7:513 7:516 ");
    EXPECT_EQ(result("CAS;" + x512 + "\n"), "3:517 ");
}

ntripStreamDecoder_t recordOf(const std::string& line) {
    const std::vector<char> bytes(line.begin(), line.end());
    ntripStreamDecoder_t decoder;
    decoder.init(bytes.data(), static_cast<unsigned>(bytes.size()));
    return decoder;
}

std::string joined(const ntripRecordDecoder_t& record) {
    std::string text;
    for (unsigned i = 0; i < record.fieldCount(); ++i) {
        text += (record.fieldAt(i) == nullptr ? "null" : *record.fieldAt(i)) + "|";
    }
    EXPECT_EQ(record.fieldAt(record.fieldCount()), nullptr);
    return text;
}

TEST(ntripRecordDecoder, splitsRecords) {
    const auto split = [](const std::string& line) { return joined(recordOf(line)); };
    for (const char* line : {"CAS;a;;2101\r\n", "CAS;a;;2101\n;b\n", "CAS;a;;2101\rx;"}) {
        EXPECT_EQ(split(line), "CAS|a|null|2101|") << line;
    }
    EXPECT_EQ(split("CAS;a;2101") + split("CAS") + split(""), "CAS|a|");
    EXPECT_EQ(split(";\r\n") + split("\r\n"), "null|null|null|");
    EXPECT_EQ(split(" a ;\"b;c\"\n") + joined(ntripRecordDecoder_t()), " a |\"b|c\"|");
    ntripRecordDecoder_t record = recordOf("a;b\n"), assigned = recordOf("x;y;z\n");
    const ntripRecordDecoder_t copy(record);
    assigned = record;
    record = *&record; // to itself
    EXPECT_EQ(joined(record), "a|b|");
    record.init(nullptr, 0);
    EXPECT_EQ(joined(record) + joined(copy) + joined(assigned), "a|b|a|b|");
}

/// What a decoder reads at `place`, with a text there that no other field has.
template <typename T, typename Decoder, typename... Cases>
void checkPlace(unsigned place, Decoder decoder, Cases... cases) {
    const auto read = [&](const std::string& text, T& out) {
        std::string line = "STR";
        for (unsigned i = 1; i < 17; ++i) {
            line += ";" + (i == place ? text : "?");
        }
        return decoder(recordOf(line + "\n"), out);
    };
    checkTexts<T>(read, cases...);
}

TEST(ntripRecordDecoder, decodesFields) {
    const auto number = [](const auto& record, auto& out) { return record.decodeField(2, out); };
    checkPlace<unsigned>(2, number, 1, "1|01", unset, "4294967297|1 |0x1|0.5", none, "");
    checkPlace<float>(2, number, 0.5F, "0.5", unset, "1 |0x1|1e39", none, "");
    const auto letter = [](const auto& record, bool& out) { return record.decodeYN(2, out); };
    checkPlace<bool>(2, letter, true, "Y", false, "N", none, "|0|1|y|Yes");
    const auto digit = [](const auto& record, bool& out) { return record.decodeOneZero(2, out); };
    checkPlace<bool>(2, digit, true, "1|01", false, "0", none, "|2|Y|4294967297|1 ");
    unsigned out = 0;
    EXPECT_FALSE(recordOf("CAS;1\n").decodeField(2, out));
}

template <typename Value, typename... Cases>
void checkStream(unsigned place, bool (ntripStreamDecoder_t::*decoder)(Value&) const,
                 Cases... cases) {
    const auto read = [&](const ntripStreamDecoder_t& stream, int& out) {
        auto value = static_cast<Value>(out);
        const bool good = (stream.*decoder)(value);
        out = value;
        return good;
    };
    checkPlace<int>(place, read, cases...);
}

TEST(ntripStreamDecoder, decodesThreeFields) {
    checkStream(5, &ntripStreamDecoder_t::decodeCarrierType, 0, "0", 1, "1", 2, "2|02", none,
                "3|-1|1.|4294967296||N");
    checkStream(12, &ntripStreamDecoder_t::decodeSolutionType, 0, "0", 1, "1", none, "2|x|");
    checkStream(15, &ntripStreamDecoder_t::decodeAuthType, 0, "N", 1, "B", 2, "D", none,
                "n|b|BD|None|0|");
}

// A namespace with an output operator of its own, which would hide those outside.
namespace naming {
using ::operator<<;
struct own_t {};
std::ostream& operator<<(std::ostream& stream, const own_t& /*own*/) { return stream << '|'; }
template <typename Value>
std::string printed() {
    std::ostringstream stream;
    for (const int value : {0, 1, 2, 3, 7}) {
        stream << own_t() << std::setfill('.') << std::setw(8) << static_cast<Value>(value);
    }
    return stream.str();
}
} // namespace naming

TEST(ntripEnumerations, print) {
    EXPECT_EQ(naming::printed<kalo::ntripCarrierType_t>(),
              "|....None|......L1|....L1L2|.Unknown|.Unknown");
    EXPECT_EQ(naming::printed<kalo::ntripSolutionType_t>(),
              "|..Single|.Network|.Unknown|.Unknown|.Unknown");
    EXPECT_EQ(naming::printed<kalo::ntripAuthType_t>(),
              "|....None|...Basic|..Digest|.Unknown|.Unknown");
}

} // namespace
