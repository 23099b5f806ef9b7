#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "kalo/ntrip/ntripRecordType.h"
#include "kalo/ntrip/ntripStreamDecoder.h"

namespace {

using kalo::ntripRecordDecoder_t;
using kalo::ntripStreamDecoder_t;
using texts_t = std::vector<std::string>;

const std::string sourcetable = "SOURCETABLE 200 OK\r\nServer: a caster\r\n"
                                "Content-Type: text/plain\r\nContent-Length: 99\r\n\r\n"
                                "STR;M;I;F;D;2;G;N;DEU;1;2;1;0;g;n;B;N;96;\r\n"
                                "CAS;h;2101\r\nNET;n;o\nENDSOURCETABLE\r\n";
const texts_t tableLines = {"7:SOURCETABLE 200 OK\r\n",
                            "1:Server: a caster\r\n",
                            "6:Content-Type: text/plain\r\n",
                            "6:Content-Length: 99\r\n",
                            "6:\r\n",
                            "2:STR;M;I;F;D;2;G;N;DEU;1;2;1;0;g;n;B;N;96;\r\n",
                            "3:CAS;h;2101\r\n",
                            "4:NET;n;o\n",
                            "5:ENDSOURCETABLE\r\n"};

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
    const auto check = [](const std::string& bytes, const char* expected) {
        unsigned length = 0;
        const std::string type = typeOf(bytes, length);
        EXPECT_EQ(type + std::to_string(length), expected) << bytes;
    };
    check("STR;X;Y\r\nmore\n", "2:9");
    check(std::string("CAS;\0\n", 6), "3:6");
    check("ENDSOURCETABLES\n", "5:16");
    check("\r\nSTR;\n", "6:2");
    for (const char* line : {"STR\n;;", " STR;\n;", "str;\nSTR", "\r\r\n\r", "ENDSOURCETABL\nE",
                             "Server:\n ;", "server: x\n", "Content-Type:\n", "\n\r\n"}) {
        const auto length = std::to_string(std::string(line).find('\n') + 1);
        check(line, ("7:" + length).c_str());
    }
    for (const std::string& incomplete : {std::string(), std::string("NET;x\r"), x512}) {
        check(incomplete, "7:0");
    }
    check(x512 + "x", "7:513");
    check("CAS;" + x512, "7:516");
    check("CAS;" + x512 + "\n", "3:517");
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
    for (const char* line : {"CAS;a;;2101\r\n", "CAS;a;;2101\n;b\n", "CAS;a;;2101\rx;"}) {
        EXPECT_EQ(joined(recordOf(line)), "CAS|a|null|2101|") << line;
    }
    EXPECT_EQ(joined(recordOf("CAS;a;2101")), "CAS|a|");
    EXPECT_EQ(joined(recordOf("CAS")) + joined(recordOf("")), "");
    EXPECT_EQ(joined(recordOf(";\r\n")), "null|null|");
    EXPECT_EQ(joined(recordOf("\r\n")), "null|");
    EXPECT_EQ(joined(recordOf(" a ;\"b;c\"\n")), " a |\"b|c\"|");
    EXPECT_EQ(joined(ntripRecordDecoder_t()), "");
    ntripRecordDecoder_t record = recordOf("a;b\n");
    const ntripRecordDecoder_t copy(record);
    ntripRecordDecoder_t assigned = recordOf("x;y;z\n");
    assigned = record;
    const ntripRecordDecoder_t& self = record;
    record = self;
    EXPECT_EQ(joined(record), "a|b|");
    record.init(nullptr, 0);
    EXPECT_EQ(joined(record) + joined(copy) + joined(assigned), "a|b|a|b|");
}

TEST(ntripRecordDecoder, decodesFields) {
    const auto record = recordOf("CAS;;N;Y;0;1;2;y;Yes;01;4294967297;1 ;0x1;0.5;1e39\n");
    std::string flags;
    std::string numbers;
    for (unsigned index = 0; index < 17; ++index) {
        for (const bool before : {false, true}) {
            bool yes = before;
            bool one = before;
            flags += record.decodeYN(index, yes) ? yes ? "Y" : "N" : ".";
            flags += record.decodeOneZero(index, one) ? one ? "1 " : "0 " : ". ";
            EXPECT_TRUE(flags[flags.size() - 3] != '.' || yes == before) << index;
            EXPECT_TRUE(flags[flags.size() - 2] != '.' || one == before) << index;
        }
        unsigned number = 77;
        float real = 77;
        numbers += record.decodeField(index, number) ? std::to_string(number) : "-";
        numbers += record.decodeField(index, real) ? "/" + std::to_string(real) + " " : "/- ";
        EXPECT_TRUE(record.fieldAt(index) != nullptr || (number == 77 && real == 77)) << index;
    }
    EXPECT_EQ(flags, ".. .. .. .. N. N. Y. Y. .0 .0 .1 .1 .. .. .. .. .. .. .1 .1 "
                     ".. .. .. .. .. .. .. .. .. .. .. .. .. .. ");
    EXPECT_EQ(numbers, "-/- -/- -/- -/- 0/0.000000 1/1.000000 2/2.000000 -/- -/- 1/1.000000 "
                       "-/4294967296.000000 -/- -/- -/0.500000 -/- -/- -/- ");
}

// The decoders of a stream, and where the field of each stands.
template <typename Value>
void checkStream(bool (ntripStreamDecoder_t::*decode)(Value&) const, unsigned place,
                 const texts_t& accepted, const texts_t& refused) {
    ntripStreamDecoder_t stream; // filled again and again
    const auto fill = [&](const std::string& text, unsigned at) {
        std::string line = "STR";
        for (unsigned i = 1; i <= at; ++i) {
            line += ";" + (i == at ? text : i == place ? "" : accepted[0]);
        }
        line += "\n";
        stream.init(line.data(), static_cast<unsigned>(line.size()));
    };
    auto out = static_cast<Value>(1);
    for (std::size_t i = 0; i < accepted.size(); ++i) {
        fill(accepted[i], place);
        EXPECT_TRUE((stream.*decode)(out)) << accepted[i];
        EXPECT_EQ(out, static_cast<Value>(i)) << accepted[i];
    }
    for (const std::string& text : refused) {
        fill(text, place);
        EXPECT_FALSE((stream.*decode)(out)) << text;
        fill(accepted[0], place + 1);
        EXPECT_FALSE((stream.*decode)(out)) << place;
        fill(accepted[0], place - 1);
        EXPECT_FALSE((stream.*decode)(out)) << place;
        EXPECT_EQ(out, static_cast<Value>(accepted.size() - 1)) << text;
    }
}

TEST(ntripStreamDecoder, decodesThreeFields) {
    checkStream(&ntripStreamDecoder_t::decodeCarrierType, 5, {"0", "1", "02"},
                {"3", "-1", "1.", "4294967296", "", "N"});
    checkStream(&ntripStreamDecoder_t::decodeSolutionType, 12, {"0", "1"}, {"2", "x", ""});
    checkStream(&ntripStreamDecoder_t::decodeAuthType, 15, {"N", "B", "D"},
                {"n", "b", "BD", "None", "0", ""});
}

template <typename Value>
std::string printed(int value) {
    std::ostringstream stream;
    stream << std::setfill('.') << std::setw(8) << static_cast<Value>(value);
    return stream.str();
}

TEST(ntripEnumerations, print) {
    const struct {
        int value;
        const char* carrier;
        const char* solution;
        const char* auth;
    } cases[] = {{0, "....None", "..Single", "....None"},
                 {1, "......L1", ".Network", "...Basic"},
                 {2, "....L1L2", ".Unknown", "..Digest"},
                 {3, ".Unknown", ".Unknown", ".Unknown"},
                 {7, ".Unknown", ".Unknown", ".Unknown"}};
    for (const auto& row : cases) {
        EXPECT_EQ(printed<kalo::ntripCarrierType_t>(row.value), row.carrier);
        EXPECT_EQ(printed<kalo::ntripSolutionType_t>(row.value), row.solution);
        EXPECT_EQ(printed<kalo::ntripAuthType_t>(row.value), row.auth);
    }
}

// A namespace with an output operator of its own, which would hide those outside.
namespace naming {
using ::operator<<;
struct own_t {};
std::ostream& operator<<(std::ostream& stream, const own_t& /*own*/) { return stream << "own "; }
void print(std::ostream& stream) {
    stream << own_t() << kalo::carrierL1L2 << kalo::solutionNetwork << kalo::authDigest;
}
} // namespace naming

TEST(ntripEnumerations, printInsideANamespace) {
    std::ostringstream stream;
    naming::print(stream);
    EXPECT_EQ(stream.str(), "own L1L2NetworkDigest");
}

} // namespace
