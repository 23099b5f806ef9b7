// Holds the record table, and with it the accessors, to the fields that each row names, and lines
// to their checksums: fields and bytes of sample records are changed one at a time, and records are
// cut.
#include <algorithm>
#include <cctype>
#include <fstream>

#include "kalo/util/stringUtil.h"
#include "tests/nmea/recordValues.h"

namespace {

// Each value of a type is present in one of its samples, so that every field counts somewhere.
// Sentences that have no samples here take those of the shipped recording.
const std::map<std::string_view, strings_t> table = {
    {"DBT",
     {"$SDDBT,36.1,f,11.0,M,6.0,F", "$SDDBT,,f,11.0,M,6.0,F", "$SDDBT,36.1,f,,M,6.0,F",
      "$SDDBT,,,,,6.0,F"}},
    {"DPT", {"$SDDPT,42.7,3.2"}},
    {"DTM", {"$GPDTM,999,A,0.5,S,1.2,E,-3.0,W84"}},
    {"GBS", {"$GPGBS,235839.00,1.14,1.21,2.62,25,0.003,-13.39,0.87"}},
    {"GGA", {"$GPGGA,235830.00,5012.34,N,00110.25,E,2,17,0.80,12.40,M,46.90,M,2.0,0120"}},
    {"GLL", {"$GPGLL,5012.34,N,00110.25,E,235836.00,A,D"}},
    {"GSA", {"$GPGSA,A,3,2,5,7,12,15,25,29,30,31,32,33,34,1.28,0.80,1.00,1"}},
    {"GST", {"$GPGST,235837.00,0.704,0.440,0.328,48.1,0.379,0.348,0.720"}},
    {"GSV",
     {"$GPGSV,1,1,5,2,65,11,47,5,43,14,44,7,14,77,34,12,33,5,39,13,8,31,36",
      "$GPGSV,1,1,4,2,65,11,47,5,43,14,44,7,14,77,34,12,33,5,39,5",
      "$GPGSV,1,1,3,2,65,11,47,5,43,14,44,7,14,77,34,5", "$GPGSV,1,1,1,2,65,11,47,5",
      "$GPGSV,1,1,2,2,65,11,47,5,43,14,44,5", "$GPGSV,1,1,0,5"}},
    {"HDT", {"$HEHDT,288.5,T"}},
    {"MWD", {"$WIMWD,226.7,T,225.8,M,18.2,N,9.4,M", "$WIMWD,226.7,T,225.8,M,,N,9.4,M"}},
    {"MWV", {"$WIMWV,318.7,R,12.0,M,A"}},
    {"RMC", {"$GPRMC,235830.00,A,5012.34,N,00110.25,E,8.94,285.0,140326,0.9,E,D"}},
    {"ROT", {"$TIROT,7.2,A"}},
    {"THS", {"$HETHS,288.5,A"}},
    {"VTG", {"$GPVTG,285.0,T,284.1,M,9.0,N,16.7,K,D", "$GPVTG,285.0,T,284.1,M,,N,16.7,K,D"}},
    {"ZDA", {"$GPZDA,235830.00,14,03,2026,05,30"}},
    {"PZWBGGA", {"$PZWBGGA,235830.00,5012.34,N,00110.25,E,2,17,0.8,12.4,M,46.9,M,2.0,0120"}},
    {"PZWBGST", {"$PZWBGST,235838.00,0.013,0.031,0.023,279.8,0.026,0.024,0.046,1"}},
    {"PZWBMDE", {"$PZWBMDE,235836.00,2,7,4.37,3.14,0.14,0.12,-0.54"}},
    {"PSIMLBP",
     {"$PSIMLBP,235832,1,Ve,A,C,2,3,4,5,6,7,8", "$PSIMLBP,235832,1,Ve,A,L,2,3,4,5,6,7,8",
      "$PSIMLBP,235832,1,Ve,A,U,2,3,4,5,6,7,8", "$PSIMLBP,235832,1,Ve,A,E,2,3,4,5,6,7,8",
      "$PSIMLBP,235832,1,Ve,A,R,2,3,4,5,6,7,8"}},
    {"PSIMSSB",
     {"$PSIMSSB,235831,B01,A,0,C,H,M,2,3,4,5,D,6,7", "$PSIMSSB,235831,B01,A,0,C,N,F,2,3,4,5,I,6,7",
      "$PSIMSSB,235831,B01,A,0,C,E,P,2,3,4,5,T,6,7", "$PSIMSSB,235831,B01,A,0,P,H,M,2,3,4,5,N,6,7",
      "$PSIMSSB,235831,B01,A,0,U,N,M,2,3,4,5,C,6,7", "$PSIMSSB,235831,B01,A,0,U,E,M,2,3,4,5,N,6,7",
      "$PSIMSSB,235831,B01,A,0,R,N,M,2,3,4,5,N,6,7"}},
    {"PTPSR", {"$PTPSR,ATT,235832.20,A,M,288.7,1.26,2.013,0.1,0.14,-0.35,7,5,4,3,2"}},
    {"TSS1", {":1A0280 -0085F-0286 -0135"}},
    // the tags in the order of their slots
    {"ATS",
     {"14 MAR 2026 23:58:34:106 B:12 X:25.1 Y:-33.5 D:21.3 P:-0.7 R:1.2 H:288.9 E:7 AP:1.1 "
      "AR:0.5 CS:0.3 CD:142 SX:277.8 SY:4.8 SH:0.8 SQ:2"}},
    {"STR",
     {"STR;PIER1;Pier One;RTCM 3.2;1004(1);2;GPS;HARBOUR;GBR;50.2;1.5;1;0;generator;none;B;"
      "N;9600;a note;and more"}},
    {"CAS", {"CAS;caster;2101;HARBOUR;Port;0;GBR;50.2;1.5;other;2102;a note;and more"}},
    {"NET", {"NET;HARBOUR;Port;B;N;http://net;http://str;register@net;a note;and more"}}};

strings_t samplesOf(std::string_view name) {
    const auto row = table.find(name);
    if (row != table.end()) {
        return row->second;
    }
    std::ifstream file(KALO_EXAMPLES "/recordings/voyage.log", std::ios::binary);
    strings_t found;
    for (std::string line; std::getline(file, line);) {
        line += '\n';
        const kalo::nmeaFormat_t format(line.data(), line.size());
        if (format.isValid() && typeOfSentence(format.type()) == typeOfName(name)) {
            found.push_back(line.substr(0, line.find('*')));
        }
    }
    return found;
}

/// Where the fields of a record are, by the numbers that the rows give them.
struct span_t {
    std::size_t begin;
    std::size_t length;
};

std::vector<span_t> fieldsOf(typeIndex_t type, const std::string& record) {
    const bool isTracking = type == typeOf<trackingRecord_t>;
    const char separator = isTracking ? ' ' : type < sentenceCount ? ',' : ';';
    std::vector<span_t> fields;
    for (std::size_t begin = 0, end = 0; begin < record.size(); begin = end) {
        if (type == typeOf<motionRecord_t>) { // whose fields are its columns
            fields.push_back({end++, 1});
            continue;
        }
        if (isTracking && fields.size() > 3) { // the first with a tag, which is none of the text
            begin = record.find(':', begin) + 1;
        }
        end = std::min(record.find(separator, begin), record.size());
        fields.push_back({begin, end - begin});
        ++end;
    }
    return fields;
}

/// Texts of every kind that a field may hold, and of none.
const strings_t texts = {
    "",   "A",  "B",  "C",   "D",      "E",       "F",         "H",        "I",     "K",   "L",
    "M",  "N",  "P",  "R",   "S",      "T",       "U",         "V",        "W",     "Y",   "f",
    "h",  "n",  "0",  "1",   "4",      "9",       "-",         "x",        "23",    "4.5", "-6",
    "7x", "Ve", "R1", "JUL", "1234.5", "01234.5", "101112.25", "12:30:15", "010203"};

bool isNamed(const recordType_t::row_t& row, std::size_t field) {
    return (row.fields >> std::min<std::size_t>(field, fieldBits - 1) & 1) != 0;
}

void perturb(typeIndex_t type, const strings_t& samples) {
    const recordType_t& listed = recordTypes[type];
    const bool hasColumns = type == typeOf<motionRecord_t>;
    const bool isTracking = type == typeOf<trackingRecord_t>;
    std::map<std::string, fieldSet_t> changedBy; // by the name of a row
    std::size_t count = 0;
    for (const std::string& sample : samples) {
        values_t values = valuesOf(type, sample);
        const std::vector<span_t> fields = fieldsOf(type, sample);
        count = std::max(count, fields.size());
        // In front is the address, the colon or the kind of a line; or, in ATS, the day.
        for (unsigned i = isTracking ? 0 : 1; i < fields.size(); ++i) {
            for (const std::string& text : texts) {
                if ((hasColumns && text.size() != 1) || (isTracking && text.empty())) {
                    continue; // other fields would move
                }
                std::string changed = sample;
                changed.replace(fields[i].begin, fields[i].length, text);
                values_t changedValues = valuesOf(type, changed);
                for (const recordType_t::row_t& row : listed) {
                    if (changedValues[row.name] != values[row.name]) {
                        EXPECT_TRUE(isNamed(row, i))
                            << row.name << " does not name field " << i << ": " << changed;
                        changedBy[row.name] |= fieldSet_t{1} << i;
                    }
                }
            }
        }
    }
    for (const recordType_t::row_t& row : listed) {
        for (std::size_t i = 0; i < count; ++i) {
            EXPECT_TRUE(!isNamed(row, i) || (changedBy[row.name] >> i & 1) != 0)
                << listed.name << ": " << row.name << " names field " << i
                << ", which changes nothing";
        }
    }
}

TEST(perturbation, valuesChangeWithTheFieldsTheyName) {
    for (typeIndex_t type = 0; type < recordTypeCount; ++type) {
        const recordType_t& listed = recordTypes[type];
        const bool hasFields = std::any_of(listed.begin(), listed.end(),
                                           [](const auto& row) { return row.fields != 0; });
        const strings_t samples = samplesOf(listed.name);
        EXPECT_TRUE(!hasFields || !samples.empty()) << listed.name << " has no samples";
        for (const std::string& sample : samples) {
            EXPECT_TRUE(type >= sentenceCount || typeOfSentence(framed(sample).type()) == type)
                << sample;
        }
        perturb(type, samples);
    }
}

// The bytes that move the fields after them, or end the record.
std::string_view separatorsOf(typeIndex_t type) {
    if (type < sentenceCount) {
        return ",";
    }
    if (type == typeOf<motionRecord_t>) {
        return "";
    }
    return type == typeOf<trackingRecord_t> ? " *\r\n" : ";\r\n";
}

// Every change of one byte of a field.
TEST(perturbation, anotherByteChangesOnlyTheValuesOfItsField) {
    for (typeIndex_t type = 0; type < recordTypeCount; ++type) {
        const strings_t samples = samplesOf(recordTypes[type].name);
        if (samples.empty()) {
            continue;
        }
        const values_t values = valuesOf(type, samples[0]);
        const std::vector<span_t> fields = fieldsOf(type, samples[0]);
        for (std::size_t i = type == typeOf<trackingRecord_t> ? 0 : 1; i < fields.size(); ++i) {
            for (std::size_t at = fields[i].begin; at < fields[i].begin + fields[i].length; ++at) {
                std::string changed = samples[0];
                for (int byte = 0; byte < 256; ++byte) {
                    changed[at] = static_cast<char>(byte);
                    if (separatorsOf(type).find(changed[at]) != std::string_view::npos) {
                        continue;
                    }
                    const values_t left = valuesOf(type, changed);
                    for (const recordType_t::row_t& row : recordTypes[type]) {
                        ASSERT_TRUE(isNamed(row, i) || left.at(row.name) == values.at(row.name))
                            << row.name << " does not name field " << i << ": " << changed;
                    }
                }
            }
        }
    }
}

// Every prefix, and every byte changed to others that mean something. A motion record has all its
// columns or no value.
TEST(perturbation, cutAndDamagedRecordsKeepTheFieldsBefore) {
    for (typeIndex_t type = 0; type < recordTypeCount; ++type) {
        const bool hasColumns = type == typeOf<motionRecord_t>;
        const bool isTracking = type == typeOf<trackingRecord_t>;
        for (const std::string& sample : samplesOf(recordTypes[type].name)) {
            const std::vector<span_t> fields = fieldsOf(type, sample);
            const values_t values = valuesOf(type, sample);
            const std::string line = type < sentenceCount || isTracking ? sample : sample + "\r\n";
            std::size_t whole = 0;
            const auto check = [&](const std::string& text) {
                const values_t left = valuesOf(type, text);
                const bool isNone = hasColumns && (text.size() < sample.size() || text[0] != ':');
                for (const recordType_t::row_t& row : recordTypes[type]) {
                    const bool isWhole = row.fields != 0 && row.fields >> whole == 0;
                    ASSERT_TRUE(isNone ? left.at(row.name).empty()
                                       : !isWhole || left.at(row.name) == values.at(row.name))
                        << row.name << ": " << testing::PrintToString(text);
                }
            };
            for (std::size_t at = 0; at < line.size(); ++at) {
                whole += fields[whole].begin + fields[whole].length < at ? 1 : 0;
                check(line.substr(0, at));
                if (whole < fields.size() && at < fields[whole].begin) {
                    continue; // in a tag, which may become the one of an earlier value
                }
                std::string changed = line;
                for (const char byte : {'\0', ' ', ',', ';', '*', '$', ':', '\r', '\n', '0', 'A',
                                        '\xFF', static_cast<char>(line[at] ^ 1)}) {
                    changed[at] = byte;
                    if (byte != line[at]) {
                        check(changed);
                    }
                }
                ASSERT_FALSE(HasFatalFailure());
            }
        }
    }
}

struct line_t {
    typeIndex_t type;
    std::string text;
};

/// All samples that can have a checksum, with it and the line end.
std::vector<line_t> linesWithChecksum() {
    std::vector<line_t> lines;
    for (typeIndex_t type = 0; type < recordTypeCount; ++type) {
        const bool isTracking = type == typeOf<trackingRecord_t>;
        if (type >= sentenceCount && !isTracking) {
            continue;
        }
        const strings_t samples = samplesOf(recordTypes[type].name);
        EXPECT_FALSE(samples.empty()) << recordTypes[type].name << " has no samples";
        for (const std::string& sample : samples) {
            // of a tracking record the first byte is covered as well
            lines.push_back(
                {type, isTracking ? sentence('$' + sample).substr(1) : sentence(sample)});
        }
    }
    return lines;
}

constexpr std::size_t endLength = 5; // of "*", two digits, CR and LF

bool isSameNumber(const std::string& left, const std::string& right) {
    unsigned numbers[2] = {0, 1};
    return kalo::decode(left, numbers[0], 16) && kalo::decode(right, numbers[1], 16) &&
           numbers[0] == numbers[1];
}

/// Whether `text`, which differs from the line in the byte at `at`, may pass for an intact one. The
/// checksum does not cover the start character and itself, and without its "*" it is text. Behind
/// that of a tracking record anything but a third digit may follow.
bool mayPass(const line_t& line, const std::string& text, std::size_t at) {
    const bool isTracking = line.type == typeOf<trackingRecord_t>;
    const bool isDigit = std::isxdigit(static_cast<unsigned char>(text[at])) != 0;
    const std::size_t star = line.text.size() - endLength;
    if (at <= star) {
        return at == star || (!isTracking && at == 0 && (text[0] == '$' || text[0] == '!'));
    }
    if (at > star + 2) {
        return isTracking && (at > star + 3 || !isDigit);
    }
    return (isDigit || !isTracking) &&
           isSameNumber(text.substr(star + 1, 2), line.text.substr(star + 1, 2));
}

bool passes(typeIndex_t type, const std::string& text) {
    const std::string_view copy = guarded(text);
    return type < sentenceCount ? kalo::nmeaFormat_t(copy.data(), copy.size()).isValid()
                                : !kalo::atsAsciiMsg_t(copy.data(), copy.size()).checksumError();
}

TEST(perturbation, checksumsNoticeEveryOtherByte) {
    for (const line_t& line : linesWithChecksum()) {
        ASSERT_TRUE(passes(line.type, line.text)) << line.text;
        std::string text = line.text;
        for (std::size_t at = 0; at < text.size(); ++at) {
            for (int change = 1; change < 256; ++change) {
                text[at] = static_cast<char>(line.text[at] ^ change);
                ASSERT_EQ(passes(line.type, text), mayPass(line, text, at))
                    << testing::PrintToString(text);
            }
            text[at] = line.text[at];
        }
    }
}

// But a tracking record passes without a checksum, and without a line end.
TEST(perturbation, checksumsNeedTheWholeLine) {
    for (const line_t& line : linesWithChecksum()) {
        const std::size_t star = line.text.size() - endLength;
        for (std::size_t length = 0; length < line.text.size(); ++length) {
            const std::string text = line.text.substr(0, length);
            const std::string_view copy = guarded(text);
            const kalo::nmeaFormat_t format(copy.data(), copy.size());
            const bool isTracking = line.type == typeOf<trackingRecord_t>;
            EXPECT_EQ(passes(line.type, text), isTracking && (length <= star || length > star + 2))
                << text;
            EXPECT_EQ(format.formatError(), length == 0 || isTracking ? 0 : 1) << text;
        }
    }
}

// For people the rows name the columns of a TSS1 record once more.
TEST(perturbation, columnsArePlaces) {
    for (recordType_t::row_t row : recordTypes[typeOf<motionRecord_t>]) {
        const std::string place = row.place;
        row.place = nullptr;
        EXPECT_EQ(place, "col " + placeOf(row));
    }
}

} // namespace
