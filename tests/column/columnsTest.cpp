// Records as columns, read back through the structures that other programs get.
#include <fstream>
#include <iterator>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/column/arrowValues.h"
#include "tools/column/arrowExport.h"
#include "tools/column/columnReader.h"

namespace {

// Structures that are released with their block.
template <typename T>
struct held_t : T {
    held_t() : T() {}
    held_t(const held_t&) = delete;
    held_t& operator=(const held_t&) = delete;
    ~held_t() { drop(); }

    void drop() {
        if (this->release != nullptr) {
            this->release(this);
        }
    }
};

std::vector<namedBatches_t> columnsOf(std::string_view bytes, columnReaderOptions_t options = {}) {
    columnReader_t reader(std::move(options));
    reader.begin("test.log");
    reader.feed(bytes);
    reader.end();
    return reader.take();
}

const namedBatches_t* tableNamed(const std::vector<namedBatches_t>& tables, std::string_view name) {
    for (const namedBatches_t& table : tables) {
        if (table.name == name) {
            return &table;
        }
    }
    return nullptr;
}

// The value in the first row of a table.
std::string firstValue(const std::vector<namedBatches_t>& tables, std::string_view name,
                       std::string_view column) {
    const namedBatches_t* const table = tableNamed(tables, name);
    if (table == nullptr || table->batches.empty()) {
        return "no table";
    }
    held_t<arrowSchema_t> schema;
    held_t<arrowArray_t> array;
    exportTypes(*table->types, schema);
    exportBatch(table->batches[0], array);
    EXPECT_EQ(faultOf(schema, array), "");
    return childText(schema, array, column, 0);
}

struct row_t {
    std::string line; // "*hh" is completed
    const char* table;
    const char* column;
    const char* value;
};

std::string completed(std::string line) {
    const std::size_t star = line.rfind("*hh");
    if (star != std::string::npos) {
        const std::size_t start = line.find_last_of("$!", star);
        unsigned char sum = 0;
        for (std::size_t i = start + 1; i < star; ++i) {
            sum = static_cast<unsigned char>(sum ^ static_cast<unsigned char>(line[i]));
        }
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02X", static_cast<unsigned>(sum));
        line.replace(star + 1, 2, digits);
    }
    return line + "\r\n";
}

constexpr const char* rmc = "$GPRMC,235959.1234565,A,5000.000,N,00100.000,W,10,90,140326,,,A*hh";

const row_t rows[] = {
    {rmc, "RMC", "source", "\"test.log\""},
    {rmc, "RMC", "line", "1"},
    {rmc, "RMC", "offset", "0"},
    {rmc, "RMC", "talker", "\"GP\""},
    {rmc, "RMC", "latitude", "50"},
    {rmc, "RMC", "longitude", "-1"},
    {rmc, "RMC", "validity", "\"A\""},
    {rmc, "RMC", "magneticVariation", "null"},
    {rmc, "RMC", "checksum", "null"},
    {rmc, "RMC", "raw", "null"},
    // Digits beyond microseconds round.
    {rmc, "RMC", "time", "1773532799123457"},
    {rmc, "RMC", "timeRule", "\"own\""},
    {rmc, "RMC", "timeOfDay", "86399.1234565"},
    {rmc, "RMC", "date", "20526"},
    {rmc, "RMC", "received", "null"},
    {rmc, "RMC", "receivedZone", "null"},
    // A second of 60 is the instant behind its minute.
    {"$GPRMC,235960,A,5000.000,N,00100.000,W,10,90,311216,,,A*hh", "RMC", "time",
     "1483228800000000"},
    {"$GPRMC,235960,A,5000.000,N,00100.000,W,10,90,311216,,,A*hh", "RMC", "date", "17166"},
    // The first year and the last second of what a sentence can send.
    {"$GPZDA,120000,14,03,0000,00,00*hh", "ZDA", "date", "-719455"},
    {"$GPZDA,235960,31,12,9999,00,00*hh", "ZDA", "time", "253402300800000000"},
    // The 30th of February was sent, and is no day.
    {"$GPRMC,120000,A,5000.000,N,00100.000,W,10,90,300226,,,A*hh", "RMC", "date", "null"},
    {"$GPRMC,120000,A,5000.000,N,00100.000,W,10,90,300226,,,A*hh", "RMC", "time", "null"},
    {"$GPRMC,120000,A,5000.000,N,00100.000,W,x,90,140326,,,A*hh", "RMC", "speedOverGround", "null"},
    {"$GPHDT,x,T*hh", "HDT", "raw", "\"$GPHDT,x,T*63\""},
    {"$GPHDT,90,T", "HDT", "checksum", "false"},
    // Stamps: with and without a zone, before 1970, and a clock without a date.
    {"2026-03-14T12:00:00.5Z $GPHDT,90,T*hh", "HDT", "received", "1773489600500000"},
    {"2026-03-14T12:00:00.5Z $GPHDT,90,T*hh", "HDT", "receivedZone", "true"},
    {"2026-03-14T12:00:00 $GPHDT,90,T*hh", "HDT", "receivedZone", "false"},
    {"1969-12-31T23:59:59.25Z $GPHDT,90,T*hh", "HDT", "received", "-750000"},
    {"12:00:00 $GPHDT,90,T*hh", "HDT", "received", "null"},
    {"12:00:00 $GPHDT,90,T*hh", "HDT", "receivedZone", "null"},
    {"03/04/2026 12:00:00 $GPHDT,90,T*hh", "HDT", "received", "null"}, // April or March
    {"2016-12-31T23:59:60.5Z $GPHDT,90,T*hh", "HDT", "received", "1483228800500000"},
    {"2026-03-14T23:59:59.9999995Z $GPHDT,90,T*hh", "HDT", "received", "1773532800000000"},
    // Text as in JSON: a byte that is not UTF-8 and a backslash are escaped.
    {"a\\b\xFF\xC3\xA4 $GPHDT,90,T*hh", "HDT", "prefix", "\"a\\\\b\\xFF\xC3\xA4\""},
    {"\\s:x,c:1334337320,n:7\\$GPHDT,90,T*hh", "HDT", "tag",
     "{\"s\":\"x\",\"c\":1334337320,\"n\":7,\"text\":\"\\\\s:x,c:1334337320,n:7\\\\\"}"},
    {"$GPHDT,90,T*hh", "HDT", "tag", "null"},
    // Lists.
    {"$GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1*hh", "GSA", "satIds", "[4,5,9,12,24]"},
    {"$GPGSA,A,1,,,,,,,,,,,,,,,*hh", "GSA", "satIds", "[]"},
    {"$GPGSV,1,1,02,13,08,031,,17,,,40*hh", "GSV", "satellites",
     "[{\"prn\":13,\"elevation\":8,\"azimuth\":31},{\"prn\":17,\"snr\":40}]"},
    {"$GPGSV,1,1,01,13,08,031,36*hh", "SATELLITES", "satellites",
     "[{\"prn\":13,\"elevation\":8,\"azimuth\":31,\"snr\":36}]"},
    {"$GPXYZ,a,,\xFF*hh", "unknown", "fields", "[\"a\",\"\",\"\\xFF\"]"},
    {"$GPXYZ,a,,\xFF*hh", "unknown", "address", "\"$GPXYZ\""},
    {"$GPHDT,90,T*00", "malformed", "error", "\"checksum mismatch\""},
    {"$GPHDT,90,T*00", "malformed", "stated", "\"00\""},
    {"$GPHDT,90,T*00", "malformed", "computed", "\"12\""},
    {"no\xFFthing", "malformed", "raw", "\"no\xFFthing\""},
    // The shortest text of a float, not its digits as a double.
    {"STR;A;A;RTCM 3;;2;GPS;N;DEU;50.1;8.7;0;0;k;none;N;N;9600;", "STR", "latitude", "50.1"},
};

TEST(columns, valuesOfOneLine) {
    for (const row_t& row : rows) {
        EXPECT_EQ(firstValue(columnsOf(completed(row.line)), row.table, row.column), row.value)
            << row.line << " " << row.column;
    }
}

TEST(columns, optionsChangeValues) {
    columnReaderOptions_t options;
    options.columns.radians = true;
    options.columns.raw = true;
    const auto tables = columnsOf(completed("$GPHDT,90,T*hh"), options);
    EXPECT_EQ(firstValue(tables, "HDT", "heading"), "1.5707963267949");
    EXPECT_EQ(firstValue(tables, "HDT", "raw"), "\"$GPHDT,90,T*12\"");
    EXPECT_EQ(tableNamed(tables, "HDT")->types->back().name, "raw");
}

TEST(columns, onlyWhatIsWanted) {
    columnReaderOptions_t options;
    options.tables = {"GLL", "HDT"};
    options.columns.columns = {"heading", "latitude", "line", "nothing"};
    const auto tables = columnsOf(completed("$GPHDT,90,T*hh") + completed(rmc), options);
    ASSERT_EQ(tables.size(), 2U);
    EXPECT_EQ(tables[0].name, "GLL");
    EXPECT_TRUE(tables[0].batches.empty());
    EXPECT_EQ(firstValue(tables, "HDT", "heading"), "90");
    EXPECT_EQ(firstValue(tables, "HDT", "line"), "1");
    EXPECT_EQ(tableNamed(tables, "HDT")->types->size(), 2U);
}

// A list that is not wanted is still searched for what it loses.
TEST(columns, lostValueInUnwantedList) {
    columnReaderOptions_t options;
    options.columns.columns = {"raw"};
    const std::string line = completed("$GPGSV,1,1,01,13,x,031,36*hh");
    EXPECT_EQ(firstValue(columnsOf(line, options), "GSV", "raw"),
              '"' + line.substr(0, line.size() - 2) + '"');
}

TEST(columns, manyRowsComeInSeveralBatches) {
    constexpr std::size_t count = 300'000;
    const std::string line = completed("$GPHDT,90,T*hh");
    columnReader_t reader({});
    reader.begin("test.log");
    for (std::size_t i = 0; i < count; ++i) {
        reader.feed(line);
    }
    reader.end();
    const auto tables = reader.take();
    ASSERT_EQ(tables.size(), 1U);
    EXPECT_GT(tables[0].batches.size(), 1U);
    held_t<arrowSchema_t> schema;
    exportTypes(*tables[0].types, schema);
    std::int64_t lines = 0;
    for (const auto& batch : tables[0].batches) {
        held_t<arrowArray_t> array;
        exportBatch(batch, array);
        EXPECT_EQ(faultOf(schema, array), "");
        for (std::int64_t row = 0; row < array.length; ++row) {
            ++lines;
            ASSERT_EQ(childText(schema, array, "line", row), std::to_string(lines));
        }
    }
    EXPECT_EQ(lines, static_cast<std::int64_t>(count));
    EXPECT_TRUE(reader.take().empty());
}

std::string recording() {
    std::ifstream file(KALO_EXAMPLES "/recordings/voyage.log", std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

// However the bytes come, and however often rows are taken, the rows are the same.
TEST(columns, piecesOfInput) {
    const std::string bytes = recording();
    ASSERT_FALSE(bytes.empty());
    const auto text = [](const std::vector<std::vector<namedBatches_t>>& parts) {
        std::map<std::string, std::string> texts;
        for (const auto& tables : parts) {
            for (const namedBatches_t& table : tables) {
                held_t<arrowSchema_t> schema;
                exportTypes(*table.types, schema);
                for (const auto& batch : table.batches) {
                    held_t<arrowArray_t> array;
                    exportBatch(batch, array);
                    EXPECT_EQ(faultOf(schema, array), "") << table.name;
                    for (std::int64_t row = 0; row < array.length; ++row) {
                        texts[table.name] += valueText(schema, array, row) + '\n';
                    }
                }
            }
        }
        return texts;
    };
    const auto whole = text({columnsOf(bytes)});
    EXPECT_GT(whole.size(), 20U);
    for (const std::size_t size : {1U, 7U, 100U, 4096U}) {
        columnReader_t reader({});
        reader.begin("test.log");
        std::vector<std::vector<namedBatches_t>> parts;
        for (std::size_t i = 0; i < bytes.size(); i += size) {
            reader.feed(std::string_view(bytes).substr(i, size));
            parts.push_back(reader.take());
        }
        reader.end();
        parts.push_back(reader.take());
        EXPECT_EQ(text(parts), whole) << size;
    }
}

// What is handed out lives on its own: after its reader, after its parent, after its stream.
TEST(arrow, lifetimes) {
    held_t<arrowSchema_t> types;
    held_t<arrowSchema_t> latitudeType;
    held_t<arrowArray_t> rowsOfStream;
    held_t<arrowArray_t> satellites;
    held_t<arrowSchema_t> satelliteTypes;
    {
        const auto tables = columnsOf(completed(rmc) + completed("$GPGSV,1,1,01,13,08,031,36*hh"));
        const namedBatches_t& table = *tableNamed(tables, "RMC");
        held_t<arrowStream_t> stream;
        exportBatches(table.types, table.batches, stream);
        ASSERT_EQ(stream.getSchema(&stream, &types), 0);
        ASSERT_EQ(stream.getNext(&stream, &rowsOfStream), 0);
        held_t<arrowArray_t> none;
        ASSERT_EQ(stream.getNext(&stream, &none), 0);
        EXPECT_EQ(none.release, nullptr);

        // Children that are moved out of their parents.
        const namedBatches_t& gsv = *tableNamed(tables, "GSV");
        held_t<arrowSchema_t> schema;
        held_t<arrowArray_t> array;
        exportTypes(*gsv.types, schema);
        exportBatch(gsv.batches[0], array);
        for (std::int64_t i = 0; i < schema.childCount; ++i) {
            if (std::string_view(schema.children[i]->name) == "satellites") {
                static_cast<arrowSchema_t&>(satelliteTypes) = *schema.children[i];
                static_cast<arrowArray_t&>(satellites) = *array.children[i];
                schema.children[i]->release = nullptr;
                array.children[i]->release = nullptr;
            }
        }
        array.drop();
        EXPECT_EQ(array.release, nullptr);
    }
    EXPECT_EQ(childText(types, rowsOfStream, "latitude", 0), "50");
    ASSERT_NE(satellites.release, nullptr);
    EXPECT_EQ(faultOf(satelliteTypes, satellites), "");
    EXPECT_EQ(valueText(satelliteTypes, satellites, 0),
              "[{\"prn\":13,\"elevation\":8,\"azimuth\":31,\"snr\":36}]");
}

TEST(arrow, streamThatNobodyReads) {
    const auto tables = columnsOf(completed(rmc));
    held_t<arrowStream_t> stream;
    exportBatches(tables[0].types, tables[0].batches, stream);
    EXPECT_EQ(stream.getLastError(&stream), nullptr);
}

TEST(arrow, unitAndMeaningAreMetadata) {
    const auto tables = columnsOf(completed("$GPHDT,90,T*hh"));
    held_t<arrowSchema_t> schema;
    exportTypes(*tables[0].types, schema);
    for (std::int64_t i = 0; i < schema.childCount; ++i) {
        const arrowSchema_t& child = *schema.children[i];
        if (std::string_view(child.name) == "heading") {
            const std::string expected("\2\0\0\0\4\0\0\0unit\3\0\0\0deg\7\0\0\0meaning\17\0\0\0"
                                       "from true north",
                                       4 + 4 + 4 + 4 + 3 + 4 + 7 + 4 + 15);
            EXPECT_EQ(std::string(child.metadata, expected.size()), expected);
            EXPECT_EQ(std::string_view(child.format), "g");
            EXPECT_EQ(child.flags, arrowNullable);
        }
    }
}

} // namespace
