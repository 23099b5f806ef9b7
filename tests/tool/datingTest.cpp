// Days and satellite sets of `kalo decode`. In inputs "<body>" is a sentence with its checksum.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/tool/runTool.h"
#include "tests/tool/toolOutput.h"

namespace {

// Sentences with a date and a time of day, and with a time of day alone.
std::string zda(const std::string& time, const std::string& date) {
    return "<$GPZDA," + time + "," + date + ",,>\n";
}
std::string rmc(const std::string& time, const std::string& status, const std::string& date) {
    return "<$GPRMC," + time + "," + status + ",,,,,,," + date + ",,>\n";
}
std::string at(const std::string& time) { return "<$GPGLL,,,,," + time + ",A>\n"; }

// One sentence of a group, with a satellite for each number.
std::string gsv(const std::string& head, const std::vector<int>& prns,
                const std::string& signal = {}) {
    std::string text = "<$" + head;
    for (const int prn : prns) {
        text += "," + std::to_string(prn) + ",45,090,40";
    }
    return text + signal + ">\n";
}

result_t decode(const std::string& options, const std::string& input) {
    std::istringstream words("decode " + options);
    return runTool({std::istream_iterator<std::string>(words), {}}, withChecksums(input));
}

std::vector<json_t> recordsOf(const std::string& options, const std::string& input) {
    const result_t result = decode(options, input);
    EXPECT_EQ(result.status, 0) << result.err;
    return readRecords(result.out, withChecksums(input));
}

struct row_t {
    const char* name;
    const char* options;
    std::string input;
    std::string times; // of each record; "-" without one
};

void runRows(const std::vector<row_t>& rows) {
    setenv("TZ", "XXX-14", 1); // no zone of the machine enters
    for (const row_t& row : rows) {
        SCOPED_TRACE(row.name);
        std::string times;
        for (const json_t& record : recordsOf(row.options, row.input)) {
            const json_t time = record.value("time", json_t("-"));
            times +=
                (times.empty() ? "" : " ") + (time.is_string() ? std::string(time) : time.dump());
        }
        EXPECT_EQ(times, row.times);
    }
}

const std::string august = "2014-08-01T12:00:00Z"; // where a day is what matters
std::string repeated(int count, const std::string& time) {
    return time + (count > 1 ? " " + repeated(count - 1, time) : "");
}
const std::string newYear = zda("235958", "31,12,2016");

TEST(dating, sentencesWithADate) {
    runRows({
        {"midnight", "", zda("235959.50", "31,07,2014") + at("000000.25"),
         "2014-07-31T23:59:59.50Z 2014-08-01T00:00:00.25Z"},
        {"back over midnight, late", "",
         zda("000000", "01,08,2014") + at("235959") + at("000001") + at("000002"),
         "2014-08-01T00:00:00Z 2014-07-31T23:59:59Z 2014-08-01T00:00:01Z 2014-08-01T00:00:02Z"},
        {"two midnights", "",
         zda("180000", "28,02,2016") + at("040000") + at("140000") + at("000000"),
         "2016-02-28T18:00:00Z 2016-02-29T04:00:00Z 2016-02-29T14:00:00Z 2016-03-01T00:00:00Z"},
        {"half a day: the earlier", "", zda("120000", "01,08,2014") + at("000000"),
         august + " 2014-08-01T00:00:00Z"},
        {"a date is taken as it is", "", zda("120000", "01,08,2014") + zda("120000", "05,03,2011"),
         august + " 2011-03-05T12:00:00Z"},
        {"RMC", "", rmc("120000", "A", "010814") + at("120001") + rmc("120002", "", "020814"),
         august + " 2014-08-01T12:00:01Z 2014-08-02T12:00:02Z"},
        {"nothing is known", "", at("120000") + zda("120000", "01,08,2014") + at("120001"),
         "- " + august + " 2014-08-01T12:00:01Z"},
        {"a wrong checksum dates nothing", "", "<$GPZDA,120000,01,08,2014,,~>\n" + at("120001"),
         "- -"},
        {"not in the calendar", "",
         zda("120000", "29,02,2014") + zda("120000", "01,13,2014") + zda("120000", "00,08,2014") +
             rmc("120000", "A", "310414") + zda("120000", ",,") + zda("120000", "01,08,2014") +
             zda("120001", "31,09,2014") + rmc("120002", "A", "999999") + at("120003"),
         "- - - - - " + august + " 2014-08-01T12:00:01Z 2014-08-01T12:00:02Z 2014-08-01T12:00:03Z"},
        {"a void RMC alone", "", rmc("000010", "V", "060180") + at("000011") + at("235959"),
         "1980-01-06T00:00:10Z 1980-01-06T00:00:11Z 1980-01-05T23:59:59Z"},
        {"a void RMC before", "",
         rmc("000010", "V", "060180") + zda("120000", "01,08,2014") + at("120001"),
         "1980-01-06T00:00:10Z " + august + " 2014-08-01T12:00:01Z"},
        {"a void RMC behind", "",
         zda("235959", "31,07,2014") + rmc("000000", "V", "060180") + rmc("000001", "V", "150806") +
             at("000002"),
         "2014-07-31T23:59:59Z 2014-08-01T00:00:00Z 2014-08-01T00:00:01Z 2014-08-01T00:00:02Z"},
        {"every type with a time", "",
         zda("120000", "01,08,2014") + rmc("120000", "A", "010814") + at("120000") +
             "<$GPGGA,120000,,,,,,,,,,,,,>\n<$GPGST,120000,,,,,,,>\n<$GPGBS,120000,,,,,,,>\n"
             "<$PZWBGGA,120000,,,,,,,,,,,,,>\n<$PZWBGST,120000,,,,,,,,>\n<$PZWBMDE,120000,,,,,,,>\n"
             "<$PSIMSSB,120000,B01,A,,C,H,M,1,2,3,4,N,,>\n<$PSIMLBP,120000,,Ve,A,C,1,2,3,4,5,6,7>\n"
             "<$PTPSR,ATT,120000,A,M,1,2,3,4,5,6,7,8,9,10,11>\n",
         repeated(12, august)},
    });
}

TEST(dating, partsAndDigits) {
    runRows({
        {"out of range", "",
         newYear + at("240000") + at("236000") + at("235961") + at("120099") + at("235959"),
         "2016-12-31T23:59:58Z - - - - 2016-12-31T23:59:59Z"},
        {"second 60", "", newYear + at("235960") + at("235960.250") + at("000000"),
         "2016-12-31T23:59:58Z 2016-12-31T23:59:60Z 2016-12-31T23:59:60.250Z 2017-01-01T00:00:00Z"},
        {"--epoch", "--epoch", newYear + at("235959.5") + at("235960.25") + at("000000.25"),
         "1483228798 1483228799.5 1483228800.25 1483228800.25"},
        {"digits of a fraction", "", zda("120000.000", "01,08,2014") + at("120000.1234567890"),
         "2014-08-01T12:00:00.000Z 2014-08-01T12:00:00.1234567890Z"},
    });
    const std::vector<json_t> records = recordsOf(
        "--quiet", at("996099.5") + zda("120000", "31,02,2014") + rmc("120001", "V", "060180"));
    ASSERT_EQ(records.size(), 3U);
    EXPECT_EQ(records[0].value("timeOfDay", ""), "99:60:99.5");
    EXPECT_EQ(records[1].value("timeOfDay", ""), "12:00:00");
    EXPECT_EQ(records[1].value("date", ""), "2014-02-31");
    EXPECT_EQ(records[2].value("date", ""), "1980-01-06");
}

TEST(dating, whatTheUserSays) {
    runRows({
        {"the day", "--date 2014-08-01",
         at("000000.5") + at("120000") + at("235959") + at("000000"),
         "2014-08-01T00:00:00.5Z 2014-08-01T12:00:00Z 2014-08-01T23:59:59Z 2014-08-02T00:00:00Z"},
        {"of two equally near days the earlier", "--date 2014-08-01", at("000000"),
         "2014-08-01T00:00:00Z"},
        {"before a stamp and a void RMC", "--date 2014-08-01",
         "2015-01-01T12:00:00Z " + rmc("120000", "V", "060180"), august},
        {"not before a sentence", "--date 2014-08-01", zda("120000", "05,03,2011") + at("120001"),
         "2011-03-05T12:00:00Z 2011-03-05T12:00:01Z"},
    });
    for (const std::string date : {"2014-13-01", "2014-02-29", "2014-00-01", "2014-8-1", "20140801",
                                   "2014-08-01T", "-014-08-01", "today", ""}) {
        const result_t result = runTool({"decode", "--date", date}, "");
        EXPECT_EQ(result.status, 2) << date;
        EXPECT_NE(result.err.find("--date"), std::string::npos) << date << ": " << result.err;
    }
}

TEST(dating, stamps) {
    const std::string zdaAtNoon = zda("120000", "01,08,2014");
    runRows({
        {"UTC", "", "2014-08-01T00:00:10Z " + at("235959") + "2014-08-01T00:00:10Z " + at("000009"),
         "2014-07-31T23:59:59Z 2014-08-01T00:00:09Z"},
        {"no zone", "", "2014-08-01 00:00:10.5," + at("235959"), "2014-07-31T23:59:59Z"},
        {"east", "", "2014-08-01T20:00:00+12:00 " + at("075900"), "2014-08-01T07:59:00Z"},
        {"west", "", "2014-08-01T10:00:00-0800 " + at("230000"), "2014-08-01T23:00:00Z"},
        {"hours alone", "", "2014-08-01T20:00:00+12\t" + at("075900"), "2014-08-01T07:59:00Z"},
        {"before a void RMC", "", august + " " + rmc("120000", "V", "060180"), august},
        {"not before a sentence", "", zdaAtNoon + "2011-01-01T00:00:00Z " + at("120001"),
         august + " 2014-08-01T12:00:01Z"},
        {"each its own until a sentence dates", "",
         august + " " + at("120000") + "2013-05-05T00:00:00Z " + at("000001"),
         august + " 2013-05-05T00:00:01Z"},
        {"a gap of days", "",
         "1990-01-01T00:00:00Z " + zdaAtNoon + "1990-01-04T00:00:05Z " + at("120005") +
             "1990-01-05T13:00:00Z " + at("005959"),
         august + " 2014-08-04T12:00:05Z 2014-08-06T00:59:59Z"},
        {"a line without one between", "",
         "1990-01-01T00:00:00Z " + zdaAtNoon + at("120001") + "1990-01-04T00:00:02Z " +
             at("120002"),
         august + " 2014-08-01T12:00:01Z 2014-08-01T12:00:02Z"},
    });
}

TEST(dating, closingLineAndInputs) {
    const std::string lacking = "2 records have a time and no date, --date tells it";
    EXPECT_NE(decode("", at("1200") + at("250000") + at("120000") + at("120001")).err.find(lacking),
              std::string::npos);
    EXPECT_EQ(decode("", zda("120000", "01,08,2014") + at("250000")).err.find("--date"),
              std::string::npos);

    const std::filesystem::path file =
        testing::TempDir() + "kalo-dating-" + std::to_string(getpid());
    std::ofstream(file) << withChecksums(zda("120000", "01,08,2014") +
                                         gsv("GPGSV,2,1,05", {1, 2, 3, 4}));
    const std::string input = withChecksums(at("120001") + gsv("GPGSV,2,2,05", {5}));
    const result_t result =
        runTool({"decode", "--type", "GLL,SATELLITES", file.string(), "-"}, input);
    std::filesystem::remove(file);
    const std::vector<json_t> records = readRecords(result.out, input);
    ASSERT_EQ(records.size(), 1U) << result.out;
    EXPECT_FALSE(records[0].contains("time")) << records[0];
    EXPECT_NE(result.err.find("0 complete, 2 incomplete; 1 records"), std::string::npos)
        << result.err;
}

TEST(satellites, sets) {
    // One of three sentences that make up a group of nine satellites.
    const auto part = [](int number, const std::string& talker, const std::string& signal) {
        const std::vector<int> prns[] = {{1, 2, 3, 4}, {5, 6, 7, 8}, {9}};
        return gsv(talker + "GSV,3," + std::to_string(number) + ",09", prns[number - 1], signal);
    };
    const std::string first = part(1, "GP", "");
    const std::string second = part(2, "GP", "");
    const std::string third = part(3, "GP", "");
    struct {
        const char* name;
        std::string input;
        std::string sets; // the line, talker, signal and number of satellites of each
        const char* counts;
    } const rows[] = {
        {"complete", first + second + third, "3 GP - 9;", "1 complete, 0 incomplete"},
        {"no satellites", gsv("GPGSV,1,1,00", {}), "1 GP - 0;", "1 complete, 0 incomplete"},
        {"one lost", first + third + first + second + third, "5 GP - 9;",
         "1 complete, 1 incomplete"},
        {"the first lost", second + third + first + second + third, "5 GP - 9;",
         "1 complete, 1 incomplete"},
        {"the last lost", first + second + first + second + third, "5 GP - 9;",
         "1 complete, 1 incomplete"},
        {"one repeated", first + second + second + third, "4 GP - 9;", "1 complete, 0 incomplete"},
        {"out of order", first + third + second + third, "4 GP - 9;", "1 complete, 0 incomplete"},
        {"open at the end", first + second, "", "0 complete, 1 incomplete"},
        {"a wrong checksum", first + "<$GPGSV,3,2,09,5,45,090,40~>\n" + third, "",
         "0 complete, 1 incomplete"},
        {"talkers and signals",
         part(1, "GP", ",1") + part(1, "GL", ",1") + part(1, "GP", ",8") + part(2, "GL", ",1") +
             part(1, "GP", ",5") + part(2, "GP", ",1") + part(3, "GP", ",1") + part(2, "GP", ",5") +
             part(3, "GL", ",1") + part(3, "GP", ",5"),
         "7 GP 1 9;9 GL 1 9;10 GP 5 9;", "3 complete, 1 incomplete"},
        {"another total", first + gsv("GPGSV,3,2,10", {5, 6, 7, 8}) + third, "",
         "0 complete, 1 incomplete"},
        {"another size", first + gsv("GPGSV,4,2,09", {5, 6, 7, 8}) + third, "",
         "0 complete, 1 incomplete"},
        {"fewer than announced", gsv("GPGSV,1,1,03", {1, 2}), "", "0 complete, 1 incomplete"},
        {"more than announced", gsv("GPGSV,1,1,01", {1, 2}), "", "0 complete, 1 incomplete"},
        {"one twice", gsv("GPGSV,1,1,02", {1, 1}), "", "0 complete, 1 incomplete"},
        {"below the horizon", "<$GPGSV,1,1,01,1,-01,090,40>\n", "", "0 complete, 1 incomplete"},
        {"no elevation", "<$GPGSV,1,1,01,1,,,40>\n", "", "0 complete, 1 incomplete"},
        {"at the bounds", "<$GPGSV,1,1,02,1,90,360,,2,0,0,>\n", "1 GP - 2;",
         "1 complete, 0 incomplete"},
        {"a first one that is not read ends a group",
         first + "<$GPGSV,3,1,09,1,45,090,40,2,45>\n" + second + third, "",
         "0 complete, 2 incomplete"},
        {"fields too many, each begun counts",
         "<$GPGSV,1,1,01,1,45,090,40,0,4>\n<$GPGSV,1,1,01,1,45,090,40,0,4>\n", "",
         "0 complete, 2 incomplete"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const result_t result = decode("--type SATELLITES", row.input);
        std::string sets;
        for (const json_t& record : readRecords(result.out, "")) {
            sets += record["line"].dump() + " " + std::string(record["talker"]) + " " +
                    (record.contains("signalId") ? record["signalId"].dump() : "-") + " " +
                    std::to_string(record["satellites"].size()) + ";";
        }
        EXPECT_EQ(sets, row.sets);
        EXPECT_NE(result.err.find(std::string("sets: ") + row.counts), std::string::npos)
            << result.err;
    }
}

TEST(satellites, record) {
    const std::string input =
        "2014-08-01T00:00:00Z noise<$GPGSV,1,1,02,12,84.4,090,40,01,30,180,,1>\n"
        "<$GPGLL,,,,,120000,A>\n";
    const std::string set = R"({"source":"-","line":1,"received":"2014-08-01T00:00:00Z",)"
                            R"("type":"SATELLITES","talker":"GP","signalId":1,"satellites":[)"
                            R"({"prn":1,"elevation":30,"azimuth":180},)"
                            R"({"prn":12,"elevation":84.4,"azimuth":90,"snr":40}]})";
    const std::string out = decode("--quiet --raw", input).out;
    const std::size_t begin = out.find('\n') + 1;
    EXPECT_EQ(out.substr(begin, out.find('\n', begin) - begin), set); // behind its sentence
    EXPECT_NE(out.find("GLL", begin), std::string::npos);
    EXPECT_EQ(decode("--quiet --type SATELLITES", input).out, set + "\n");
    EXPECT_EQ(decode("--quiet --type GSV", input).out.find("SATELLITES"), std::string::npos);
    const json_t radians = json_t::parse(decode("--quiet --radians --type SATELLITES", input).out);
    EXPECT_DOUBLE_EQ(radians["satellites"][0]["azimuth"], 3.141592653589793);

    // A block's text that does not decode is kept in the bytes; an empty field is nothing lost.
    const std::vector<json_t> sentences = recordsOf(
        "--quiet --type GSV", "<$GPGSV,1,1,02,1,45,090,40,2,x,090,>\n<$GPGSV,1,1,01,3,,,40>\n");
    ASSERT_EQ(sentences.size(), 2U);
    EXPECT_TRUE(sentences[0].contains("raw"));
    EXPECT_EQ(sentences[0]["satellites"][1].dump(), R"({"prn":2,"azimuth":90})");
    EXPECT_FALSE(sentences[1].contains("raw"));
    EXPECT_EQ(sentences[1]["satellites"].dump(), R"([{"prn":3,"snr":40}])");
}

} // namespace
