#include <functional>
#include <iomanip>
#include <sstream>

#include "kalo/ntrip/ntripRecordType.h"
#include "kalo/ntrip/ntripStreamDecoder.h"
#include "tests/sentence.h"

namespace {

using kalo::ntripRecordDecoder_t;
using kalo::ntripStreamDecoder_t;

// The type and the length of the first line, from memory of exactly that size.
kalo::ntripRecordType_t typeOf(const std::string& received, unsigned& length) {
    const std::vector<char> bytes(received.begin(), received.end());
    length = static_cast<unsigned>(bytes.size());
    return kalo::decodeNtripRecordType(bytes.data(), length);
}

TEST(ntripRecordType, readsTheFirstLine) {
    const auto read = [](const std::string& received) {
        unsigned length = 0;
        const kalo::ntripRecordType_t type = typeOf(received, length);
        EXPECT_EQ(length, received.find('\n') + 1) << received;
        return type;
    };
    checkTexts<int>(
        read, {{kalo::ntripRecordServer, {"Server: a caster\r\n"}},
               {kalo::ntripRecordHeader,
                {"Content-Type: text/plain\r\n", "Content-Length: 99\r\n", "\r\nSTR;\n"}},
               {kalo::ntripRecordStream, {"STR;X;Y\r\nmore\n"}},
               {kalo::ntripRecordCaster,
                {"CAS;h;2101\r\n", {"CAS;\0\n", 6}, "CAS;" + std::string(600, 'x') + '\n'}},
               {kalo::ntripRecordNetwork, {"NET;n;o\nSTR"}},
               {kalo::ntripRecordEndOfTable, {"ENDSOURCETABLE\r\n", "ENDSOURCETABLES\n"}},
               {kalo::ntripRecordUnknown,
                {"SOURCETABLE 200 OK\r\n", "STR\n;;", " STR;\n;", "str;\nSTR", "\r\r\n\r", "\n\r\n",
                 "ENDSOURCETABL\nE", "Server:\n ;", "server: x\n", "Content-Type:\n"}}});
}

TEST(ntripRecordType, waitsForTheLineEnd) {
    for (const auto& [size, expected] : {std::pair(0U, 0U), {511U, 0U}, {512U, 0U}, {513U, 513U}}) {
        unsigned length = 0;
        EXPECT_EQ(typeOf(std::string("STR;").append(size, 'x').substr(0, size), length),
                  kalo::ntripRecordUnknown);
        EXPECT_EQ(length, expected) << size;
    }
}

ntripStreamDecoder_t recordOf(const std::string& line) {
    const std::vector<char> bytes(line.begin(), line.end());
    ntripStreamDecoder_t decoder;
    decoder.init(bytes.data(), static_cast<unsigned>(bytes.size()));
    return decoder;
}

strings_t fieldsOf(const ntripRecordDecoder_t& record) {
    strings_t fields;
    for (unsigned i = 0; i < record.fieldCount(); ++i) {
        fields.push_back(record.fieldAt(i) == nullptr ? "(null)" : *record.fieldAt(i));
    }
    EXPECT_EQ(record.fieldAt(record.fieldCount()), nullptr);
    return fields;
}

TEST(ntripRecordDecoder, splitsRecords) {
    const auto read = [](const std::string& line) { return fieldsOf(recordOf(line)); };
    checkTexts<strings_t>(read, {{strings_t{"CAS", "a", "(null)", "2101"},
                                  {"CAS;a;;2101\r\n", "CAS;a;;2101\n;b\n", "CAS;a;;2101\rx;"}},
                                 {strings_t{"CAS", "a"}, {"CAS;a;2101"}}, // no line end
                                 {strings_t{}, {"CAS", ""}},
                                 {strings_t{"(null)", "(null)"}, {";\r\n"}},
                                 {strings_t{"(null)"}, {"\r\n"}},
                                 {strings_t{" a ", "\"b", "c\""}, {" a ;\"b;c\"\n"}}});
    ntripRecordDecoder_t record = recordOf("a;b\n"), assigned = recordOf("x;y;z\n");
    const ntripRecordDecoder_t copy(record);
    assigned = record;
    record = *&record; // to itself
    EXPECT_EQ(fieldsOf(record), (strings_t{"a", "b"}));
    record.init(nullptr, 0);
    EXPECT_TRUE(fieldsOf(record).empty() && fieldsOf(copy) == fieldsOf(assigned));
    EXPECT_EQ(fieldsOf(copy), (strings_t{"a", "b"}));
}

/// What `decode(record, out)` gives for a text in one field, where no other field decodes.
template <typename T, typename Decode>
void check(unsigned field, Decode decode, T before, const std::vector<texts_t<T>>& rows) {
    const auto read = [&](const std::string& text) {
        std::string line = "STR;";
        for (unsigned i = 1; i < 17; ++i) {
            line += (i == field ? text : "?") + ';';
        }
        return valueOf<T>([&](T& out) { return decode(recordOf(line), out); }, before);
    };
    checkTexts<T>(read, rows);
}

TEST(ntripRecordDecoder, decodesFields) {
    const auto number = [](const auto& record, auto& out) { return record.decodeField(2, out); };
    check<unsigned>(2, number, 63, {{1, {"1", "01"}}, {10, {"010"}}, {refused, {""}}});
    check<float>(2, number, 63, {{0.5F, {"0.5"}}, {refused, {""}}});
    const auto letter = [](const auto& record, bool& out) { return record.decodeYN(2, out); };
    const auto digit = [](const auto& record, bool& out) { return record.decodeOneZero(2, out); };
    for (const bool before : {false, true}) {
        check<bool>(2, letter, before,
                    {{true, {"Y"}}, {false, {"N"}}, {refused, {"", "0", "1", "y", "Yes"}}});
        check<bool>(2, digit, before,
                    {{true, {"1", "01"}}, {false, {"0"}}, {refused, {"", "2", "Y", "4294967297"}}});
    }
    unsigned out = 0;
    EXPECT_FALSE(recordOf("CAS;1\n").decodeField(2, out));
}

template <typename T>
void check(unsigned field, bool (ntripStreamDecoder_t::*decoder)(T&) const,
           const std::vector<texts_t<T>>& rows) {
    check<T>(field, std::mem_fn(decoder), static_cast<T>(7), rows);
}

TEST(ntripStreamDecoder, decodesThreeFields) {
    check(5, &ntripStreamDecoder_t::decodeCarrierType,
          {{kalo::carrierNone, {"0"}},
           {kalo::carrierL1, {"1"}},
           {kalo::carrierL1L2, {"2", "02"}},
           {refused, {"3", "-1", "1.", "4294967296", "", "N"}}});
    check(
        12, &ntripStreamDecoder_t::decodeSolutionType,
        {{kalo::solutionSingle, {"0"}}, {kalo::solutionNetwork, {"1"}}, {refused, {"2", "x", ""}}});
    check(15, &ntripStreamDecoder_t::decodeAuthType,
          {{kalo::authNone, {"N"}},
           {kalo::authBasic, {"B"}},
           {kalo::authDigest, {"D"}},
           {refused, {"n", "b", "BD", "None", "0", ""}}});
}

template <typename Value>
std::string printed() {
    std::ostringstream stream;
    for (const int value : {0, 1, 2, 3, 7}) {
        stream << '|' << std::setfill('.') << std::setw(8) << static_cast<Value>(value);
    }
    return stream.str();
}

TEST(ntripEnumerations, print) {
    EXPECT_EQ(printed<kalo::ntripCarrierType_t>(), "|....None|......L1|....L1L2|.Unknown|.Unknown");
    EXPECT_EQ(printed<kalo::ntripSolutionType_t>(),
              "|..Single|.Network|.Unknown|.Unknown|.Unknown");
    EXPECT_EQ(printed<kalo::ntripAuthType_t>(), "|....None|...Basic|..Digest|.Unknown|.Unknown");
}

} // namespace
