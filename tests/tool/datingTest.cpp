// Days and satellite sets of `kalo decode`; how the rows are written stands in toolOutput.h.
#include <filesystem>
#include <fstream>

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

// Rows whose records are the times alone, "-" where there is none.
void expectTimes(std::vector<row_t> rows) {
    for (row_t& row : rows) {
        std::string records;
        for (const std::string& time : words(row.records)) {
            records += (records.empty() ? "time=" : " | time=") + (time == "-" ? "" : time);
        }
        row.records = records;
    }
    expectRecords(rows);
}

const std::string august = "2014-08-01T12:00:00Z"; // where a day is what matters
const std::string noon = zda("120000", "01,08,2014");
const std::string before = "2016-12-31T23:59:58Z ";
const std::string newYear = zda("235958", "31,12,2016");
const std::string next = "2014-08-01T12:00:01Z";

TEST(dating, sentencesWithADate) {
    expectTimes({
        {"", zda("235959.50", "31,07,2014") + at("000000.25"),
         "2014-07-31T23:59:59.50Z 2014-08-01T00:00:00.25Z"},
        {"", zda("000000", "01,08,2014") + at("235959") + at("000001"), // late
         "2014-08-01T00:00:00Z 2014-07-31T23:59:59Z 2014-08-01T00:00:01Z"},
        {"", noon + at("000000"), august + " 2014-08-01T00:00:00Z"}, // of two the earlier
        {"", noon + zda("120000", "05,03,2011"), august + " 2011-03-05T12:00:00Z"},
        {"", rmc("120000", "A", "010814") + at("120001") + rmc("120002", "", "020814"),
         august + " " + next + " 2014-08-02T12:00:02Z"},
        {"", "<$GPZDA,120000,01,08,2014,,~>\n" + at("120001"), "- -"},
        // Days that are not in the calendar.
        {"", zda("120000", "29,02,2014") + zda("120000", "01,13,2014") + zda("120000", ",,"),
         "- - -"},
        {"", zda("120000", "00,08,2014") + rmc("120000", "A", "310414") + at("120000"), "- - -"},
        {"", noon + zda("120001", "31,09,2014") + rmc("120002", "A", "999999") + at("120003"),
         august + " " + next + " 2014-08-01T12:00:02Z 2014-08-01T12:00:03Z"},
        // A void RMC dates nothing that anything else dates.
        {"", rmc("000010", "V", "060180") + at("000011") + at("235959"),
         "1980-01-06T00:00:10Z 1980-01-06T00:00:11Z 1980-01-05T23:59:59Z"},
        {"", rmc("000010", "V", "060180") + noon + at("120001"),
         "1980-01-06T00:00:10Z " + august + " " + next},
        {"", zda("235959", "31,07,2014") + rmc("000000", "V", "060180") + at("000001"),
         "2014-07-31T23:59:59Z 2014-08-01T00:00:00Z 2014-08-01T00:00:01Z"},
    });
}

TEST(dating, partsAndDigits) {
    expectTimes({
        {"", newYear + at("240000") + at("236000") + at("235961") + at("120099") + at("235959"),
         before + "- - - - 2016-12-31T23:59:59Z"},
        {"", newYear + at("235960") + at("235960.250") + at("000000"),
         before + "2016-12-31T23:59:60Z 2016-12-31T23:59:60.250Z 2017-01-01T00:00:00Z"},
        {"--epoch", newYear + at("235959.5") + at("235960.25") + at("000000.25"),
         "1483228798 1483228799.5 1483228800.25 1483228800.25"},
        {"", zda("120000.000", "01,08,2014") + at("120000.1234567890"),
         "2014-08-01T12:00:00.000Z 2014-08-01T12:00:00.1234567890Z"},
    });
    const std::string lacking = "2 records have a time but no date; give --date YYYY-MM-DD";
    expectRecords({
        {"", at("996099.5") + zda("120000", "31,02,2014") + rmc("120001", "V", "060180"),
         "timeOfDay=99:60:99.5 | timeOfDay=12:00:00 date=2014-02-31 time= | date=1980-01-06"},
        {"", at("1200") + at("250000") + at("120000") + at("120001"),
         "time= | time= | time= | time=", lacking.c_str()},
    });
    const result_t dated = runTool({"decode"}, withChecksums(noon + at("250000")));
    EXPECT_EQ(dated.err.find("--date"), std::string::npos) << dated.err;
}

TEST(dating, whatTheUserSays) {
    expectTimes({
        {"--date 2014-08-01", at("000000.5") + at("120000") + at("235959") + at("000000"),
         "2014-08-01T00:00:00.5Z " + august + " 2014-08-01T23:59:59Z 2014-08-02T00:00:00Z"},
        {"--date 2014-08-01", at("000000"), "2014-08-01T00:00:00Z"}, // of two the earlier
        {"--date 2014-08-01", "2015-01-01T12:00:00Z " + rmc("120000", "V", "060180"), august},
        {"--date 2014-08-01", zda("120000", "05,03,2011") + at("120001"),
         "2011-03-05T12:00:00Z 2011-03-05T12:00:01Z"},
    });
    for (const std::string date : {"2014-13-01", "2014-02-29", "2014-00-01", "2014-8-1", "20140801",
                                   "2014-08-01T", "-014-08-01", "today", ""}) {
        const result_t result = runTool({"decode", "--date", date}, "");
        EXPECT_EQ(result.status, 2) << date;
        expectParts(result.err, "--date");
    }
}

TEST(dating, stamps) {
    const std::string first = "1990-01-01T00:00:00Z " + noon;
    expectTimes({
        {"", "2014-08-01T00:00:10Z " + at("235959") + "2014-08-01T00:00:10Z " + at("000009"),
         "2014-07-31T23:59:59Z 2014-08-01T00:00:09Z"},
        {"", "2014-08-01 00:00:10.5," + at("235959"), "2014-07-31T23:59:59Z"},
        {"", "2014-08-01T20:00:00+12:00 " + at("075900"), "2014-08-01T07:59:00Z"},
        {"", "2014-08-01T10:00:00-0800 " + at("230000"), "2014-08-01T23:00:00Z"},
        {"", "2014-08-01T20:00:00+12\t" + at("075900"), "2014-08-01T07:59:00Z"},
        {"", august + " " + rmc("120000", "V", "060180"), august},
        {"", noon + "2011-01-01T00:00:00Z " + at("120001"), august + " " + next},
        {"", august + " " + at("120000") + "2013-05-05T00:00:00Z " + at("000001"),
         august + " 2013-05-05T00:00:01Z"}, // each its own until a sentence dates
        {"",
         first + "1990-01-04T00:00:05Z " + at("120005") + "1990-01-05T13:00:00Z " + at("005959"),
         august + " 2014-08-04T12:00:05Z 2014-08-06T00:59:59Z"},
        {"", first + at("120001") + "1990-01-04T00:00:02Z " + at("120002"), // one without between
         august + " " + next + " 2014-08-01T12:00:02Z"},
    });
}

TEST(satellites, sets) {
    // Sentences of a group of three satellites, one in each.
    const auto part = [](const std::string& number, const std::string& talker = "GP",
                         const std::string& signal = {}) {
        return "<$" + talker + "GSV,3," + number + ",03," + number + ",45,90,40" + signal + ">\n";
    };
    const std::string a = part("1");
    const std::string b = part("2");
    const std::string c = part("3");
    const std::string sat = ",1,45,90,40";
    const std::string gp = part("1", "GP", ",1") + part("2", "GP", ",1");
    const std::string gl = part("1", "GL", ",1") + part("2", "GL", ",1");
    const char* complete = "groups: 1 complete";
    const char* open = "groups: 1 incomplete";
    const char* partial = "groups: 1 partial";
    const char* both = "groups: 1 complete, 1 incomplete";
    std::vector<row_t> rows = {
        {"", a + b + c, "line=3 talker=GP signalId= sats=3", complete},
        {"", "<$GPGSV,1,1,00>", "sats=0", complete},
        {"", a + c + a + b + c, "line=5 sats=3", both},
        {"", b + c + a + b + c, "line=5 sats=3", both},
        {"", a + b + a + b + c, "line=5 sats=3", both},
        {"", a + b + b + c, "line=4 sats=3", complete},
        {"", a + c + b + c, "line=4 sats=3", complete},
        {"", a + "<$GPGSV,3,2,03,2,45,90,40~>\n" + c, "", open},
        {"", gp + gl + part("1", "GP", ",8") + part("3", "GP", ",1") + part("3", "GL", ",1"),
         "line=6 talker=GP signalId=1 | line=7 talker=GL sats=3", "2 complete, 1 incomplete"},
        {"", "<$GPGSV,1,1,02" + sat + ">", "inView=2 sats=1", partial},
        {"", "<$GPGSV,1,1,01" + sat + ",2,45,90,40>", "inView=1 sats=2", partial},
        {"", "<$GPGSV,1,1,01,1,-01,090,40>", "inView=1 sats=0", partial}, // below the horizon
        {"", a + "<$GPGSV,3,1,03" + sat + ",2,45>\n" + b + c, "", "groups: 2 incomplete"},
    };
    for (row_t& row : rows) {
        row.options = "--type SATELLITES";
    }
    expectRecords(rows);
}

TEST(satellites, records) {
    const std::string input =
        "2014-08-01T00:00:00Z noise<$GPGSV,1,1,02,12,84.4,090,40,01,30,180,,1>\n" + at("120000");
    const std::string set = "source=- line=1 offset= received=2014-08-01T00:00:00Z prefix=noise "
                            "type=SATELLITES talker=GP signalId=1 inView=2 raw= satellites=";
    const std::string list =
        "[{prn:1,elevation:30,azimuth:180},{prn:12,elevation:84.4,azimuth:90,snr:40}]";
    expectRecords({
        {"--raw", input, "type=GSV | " + set + list + " | type=GLL"},
        {"--type SATELLITES", input, set + list},
        {"--type GSV", input, "type=GSV"},
        {"--radians", "<$GPGSV,1,1,01,1,0,180,>",
         "type=GSV | satellites=[{prn:1,elevation:0,azimuth:3.141592653589793}]"},
        // A block's text that does not decode is kept in the bytes; an empty field is nothing lost.
        {"--type GSV", "<$GPGSV,1,1,02,1,45,090,40,2,x,090,>\n<$GPGSV,1,1,01,3,,,40>",
         "satellites=[{prn:1,elevation:45,azimuth:90,snr:40},{prn:2,azimuth:90}] "
         "raw=<$GPGSV,1,1,02,1,45,090,40,2,x,090,> | satellites=[{prn:3,snr:40}] raw="},
    });
}

// Each input has its own day and its own sets.
TEST(dating, inputs) {
    const std::string file = testing::TempDir() + "kalo-dating-" + std::to_string(getpid());
    std::ofstream(file) << withChecksums(noon + "<$GPGSV,2,1,02,1,45,090,40>\n");
    const std::string input = withChecksums(at("120001") + "<$GPGSV,2,2,02,2,45,090,40>\n");
    const result_t result = runTool({"decode", "--type", "GLL,SATELLITES", file, "-"}, input);
    std::filesystem::remove(file);
    const std::vector<json_t> records = readRecords(result.out, input);
    ASSERT_EQ(records.size(), 1U) << result.out;
    EXPECT_FALSE(records[0].contains("time")) << records[0];
    expectParts(result.err, "groups: 2 incomplete; 1 record has a time");
}

} // namespace
