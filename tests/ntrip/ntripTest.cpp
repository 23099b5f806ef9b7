#include <iomanip>
#include <sstream>

#include "kalo/ntrip/ntripRecordType.h"
#include "kalo/ntrip/ntripStreamDecoder.h"
#include "tests/nmea/recordValues.h"

namespace {

using kalo::ntripRecordDecoder_t;
using kalo::ntripStreamDecoder_t;

// The type and the length of the first line.
kalo::ntripRecordType_t firstLine(const std::string& received, unsigned& length) {
    length = static_cast<unsigned>(received.size());
    return kalo::decodeNtripRecordType(guarded(received).data(), length);
}

TEST(ntripRecordType, readsTheFirstLine) {
    const auto read = [](const std::string& received) {
        unsigned length = 0;
        const kalo::ntripRecordType_t type = firstLine(received, length);
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
    unsigned length = 77;
    for (const unsigned size : {0U, 511U, 512U, 513U}) {
        EXPECT_EQ(firstLine(std::string(size, 'x'), length), kalo::ntripRecordUnknown);
        EXPECT_EQ(length, size > 512 ? size : 0);
    }
    EXPECT_EQ(firstLine("NET;x\r", length), kalo::ntripRecordUnknown);
    EXPECT_EQ(length, 0U);
}

ntripStreamDecoder_t recordOf(const std::string& line) {
    ntripStreamDecoder_t decoder;
    decoder.init(guarded(line).data(), static_cast<unsigned>(line.size()));
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

/// The value of a row for lines that describe a stream; "" is none.
void check(const char* name, const std::vector<texts_t<std::string>>& rows) {
    checkTexts<std::string>(
        [&](const std::string& line) { return valuesOf(typeOf<streamRecord_t>, line).at(name); },
        rows);
}

TEST(ntripStreamDecoder, decodesFields) {
    check("carrierType",
          {{"None", {"STR;;;;;0"}},
           {"L1", {"STR;;;;;1"}},
           {"L1L2", {"STR;;;;;2", "STR;;;;;02"}},
           {"", {"STR;;;;;3", "STR;;;;;-1", "STR;;;;;1.", "STR;;;;;4294967296", "STR;;;;;N"}}});
    check("nmea", {{"1", {"STR;;;;;;;;;;;1", "STR;;;;;;;;;;;01"}},
                   {"0", {"STR;;;;;;;;;;;0"}},
                   {"", {"STR;;;;;;;;;;;2", "STR;;;;;;;;;;;Y", "STR;;;;;;;;;;;4294967297"}}});
    check("solutionType", {{"Single", {"STR;;;;;;;;;;;;0"}},
                           {"Network", {"STR;;;;;;;;;;;;1"}},
                           {"", {"STR;;;;;;;;;;;;2", "STR;;;;;;;;;;;;x"}}});
    check("authType",
          {{"None", {"STR;;;;;;;;;;;;;;;N"}},
           {"Basic", {"STR;;;;;;;;;;;;;;;B"}},
           {"Digest", {"STR;;;;;;;;;;;;;;;D"}},
           {"", {"STR;;;;;;;;;;;;;;;n", "STR;;;;;;;;;;;;;;;BD", "STR;;;;;;;;;;;;;;;None"}}});
    check("fee",
          {{"1", {"STR;;;;;;;;;;;;;;;;Y"}},
           {"0", {"STR;;;;;;;;;;;;;;;;N"}},
           {"", {"STR;;;;;;;;;;;;;;;;1", "STR;;;;;;;;;;;;;;;;y", "STR;;;;;;;;;;;;;;;;Yes"}}});
    check("bitrate", {{"10", {"STR;;;;;;;;;;;;;;;;;010"}}, {"", {"STR;;;;;;;;;;;;;;;;;0x1"}}});
    check("latitude", {{"0.5", {"STR;;;;;;;;;0.5"}}, {"", {"STR;;;;;;;;;0.5 "}}});
}

TEST(ntripRecordDecoder, leavesOutUntouched) {
    const ntripStreamDecoder_t record = recordOf("STR;;Yes\n");
    for (const unsigned field : {1U, 2U, 3U}) { // empty, no letter or digit, not there
        EXPECT_FALSE(valueOf<bool>([&](bool& out) { return record.decodeYN(field, out); }, true));
        EXPECT_FALSE(
            valueOf<bool>([&](bool& out) { return record.decodeOneZero(field, out); }, true));
    }
    EXPECT_FALSE(valueOf<unsigned>([&](auto& out) { return record.decodeField(1, out); }, 77));
    EXPECT_FALSE(valueOf<float>([&](auto& out) { return record.decodeField(1, out); }, 77));
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
