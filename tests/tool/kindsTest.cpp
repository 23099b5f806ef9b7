// The kinds of records in one log: how each is told from the others, and what it prints; how the
// rows are written stands in toolOutput.h.
#include <algorithm>
#include <map>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/tool/runTool.h"
#include "tests/tool/toolOutput.h"

namespace {

using namespace std::string_literals;

const std::string stamp = "2014-08-01T00:00:00.316000Z";
const std::string motion = ":0A01C3 -0059U 0228 -0106";
const std::string moment = "16 NOV 2026 21:41:01:250";
// The checksum of a tracking record covers its first byte too.
const std::string tracking = moment + " B:12*" + checksumOf("-" + moment + " B:12");
const std::string stream = "STR;M;I;F;D;2;N;W;GBR;50.21;-0.01;1;0;G;C;B;N;9600;a";
const std::string isMotion = "type=TSS1 error= heave=-0.59 raw=";
const std::string isTracking = "type=ATS error= beaconId=12 raw=";
const std::string isNothing = "type=null error=nothing decodes";
const std::string isUnknown = "type=null error=not a known record";

std::string times(int count, const std::string& record) {
    return record + (count > 1 ? " | " + times(count - 1, record) : "");
}

TEST(kinds, motion) {
    expectRecords({
        {"", motion, isMotion + " talker= roll=2.28 pitch=-1.06 status=U"},
        {"--radians", motion, "heave=-0.59 roll=" + json_t(228 * 0x1.6e05a695f8191p-13).dump()},
        {"", ":xA01C3 -0059U 0228 -0106\n:0A01C3 -0059X 0228 -0106",
         "horizontalAcceleration= roll=2.28 raw=:xA01C3 -0059U 0228 -0106 | "
         "status= heave=-0.59 raw=:0A01C3 -0059X 0228 -0106"},
        {"--raw", ":\n:0A01C3 -0059U 0228 -010\n:xxxxxx xxxxxxxxxxx xxxxx", times(3, isNothing)},
        {"", motion + "\n" + motion + "\r" + motion + "\r\r\n" + motion, times(4, isMotion)},
        {"--strict --raw", motion + "\n" + motion + "\r" + motion + "\r\n" + motion,
         times(4, "type=TSS1")},
        {"", stamp + "," + motion, "received=" + stamp + " prefix= time= " + isMotion},
        {"--strict", stamp + " " + motion + "\r\n", "error=no start character received="},
        {"--raw", stamp + " " + motion + "<$GPXYZ,1><$GPXYZ,2>",
         "type=TSS1 offset=0 | offset=53 prefix= fields=[1] received=" + stamp + " | fields=[2]"},
        {"", motion + "$GPXYZ,1\n:12<$GPXYZ,2>",
         isMotion + " | error=cut | " + isNothing + " raw=:12 | fields=[2]"},
        {"", "<$GPXYZ,1>" + motion + "\n " + motion, "error= | error=cut | " + isUnknown},
    });
}

TEST(kinds, tracking) {
    const std::string behind = "\n<$GPGLL,,,,,000001>";
    const std::string late = "16 NOV 2026 23:59:59:900 B:12";
    const std::string sum = checksumOf("-" + late);
    const std::string wrong = "type=ATS time= beaconId=12 timeOfDay=23:59:59.900 error=";
    const std::string digits = wrong + "bad checksum digits stated= computed=";
    expectRecords({
        {"", tracking + "\r" + tracking + "\r\n" + tracking, times(3, isTracking)},
        {"--strict", tracking + "\n" + tracking, times(2, isTracking)},
        {"", moment + " B:A7 X:1:2 SQ: Q:9",
         "beaconId=A7 beaconNumber= beaconX= raw=" + moment + " B:A7 X:1:2 SQ: Q:9"},
        {"", "1 jan 99 0:00:00 Q:\n  16  NOV  2026  21:41:01  junk B:12",
         "type=ATS date=1999-01-01 timeOfDay=00:00:00 | beaconId=12 time=2026-11-16T21:41:01Z"},
        {"", moment + "\n" + moment + " junk\n" + moment + "*00 B:12\n16 NOV 2026 B:12 X:1",
         times(4, isUnknown)},
        {"",
         "16 11 2026 21:41:01 B:1\n32 NOV 2026 21:41:01 B:1\n16 NOV 2026 21:41:01.250 B:1\n"
         "16 NOV 2026 24:00:00 B:1\n16\tNOV 2026 21:41:01 B:1",
         times(5, isUnknown)},
        {"--raw", stamp + "," + tracking + "<$GPXYZ,1>",
         "received=" + stamp + " beaconId=12 | prefix= fields=[1]"},
        {"", late + "*" + sum + behind,
         "time=2026-11-16T23:59:59.900Z | time=2026-11-17T00:00:01Z"},
        {"", late + "*00" + behind,
         wrong + "checksum mismatch stated=00 computed=" + sum + " raw=" + late + "*00 | time="},
        {"--date 2014-08-01", late + "*00" + behind,
         wrong + "checksum mismatch | time=2014-08-01T00:00:01Z"},
        {"", "31 FEB 2026 23:59:59 B:1" + behind, "type=ATS date=2026-02-31 time= error= | time="},
        {"", late + "*\n" + late + "*3\n" + late + "*333\n" + late + "*G3" + behind,
         times(4, digits) + " | time="},
        {"", moment + " B:12*1axyz", "error=checksum mismatch stated=1A"},
        {"--only-valid", late + "*00\n" + late + "*\n" + tracking, isTracking,
         "1 decoded; 2 malformed; 1 checksum mismatch; 1 bad checksum digits"},
        {"--type ATS", late + "*00\n" + motion + "\n" + tracking,
         "error=checksum mismatch | " + isTracking},
    });
    // Behind the third colon stands a number, which prints as the digits of a fraction.
    std::string input = "1 JAN 2026 21::41:59 B:1\n1 JAN 2026 21:41:59: B:1\n";
    std::string expected = times(2, "timeOfDay=21:41:59 time=2026-01-01T21:41:59Z");
    for (int i = 0; i < 1000; ++i) {
        input += "1 JAN 2026 21:41:59:" + std::to_string(i) + " B:1\n";
        expected += " | timeOfDay=21:41:59." + std::to_string(1000 + i).substr(1);
    }
    expectRecords({{"", input, expected}});
}

TEST(kinds, sourcetables) {
    const std::string table = "type=TABLE error= text=";
    expectRecords({
        {"--raw", "SOURCETABLE 200 OK\r\nServer: S/1\r\n\r\nX-Any: b: c\r\n" + stream,
         table + "SOURCETABLE 200 OK | " + table + "Server: S/1 | line=4 " + table +
             "X-Any: b: c | type=STR latitude=50.21"},
        {"", "CAS;h;2101;I;O;0;GBR;50.21;-0.01;g;22;a;b\nNET;I;O;D;Y;w;s;r;a;\nENDSOURCETABLE",
         "type=CAS host=h port=2101 nmea=false fallbackPort=22 misc=a;b | "
         "type=NET identifier=I authType=Digest fee=true webReg=r misc=a; | " +
             table + "ENDSOURCETABLE"},
        {"--radians", stream,
         "type=STR mountpoint=M carrierType=L1L2 latitude=50.21 longitude=-0.01 nmea=true "
         "solutionType=Single authType=Basic fee=false bitrate=9600 misc=a raw="},
        // Header lines stand only behind a status line, up to the first record.
        {"", "Server: S\nHTTP/1.1 200 OK\n\nnoise\nbad name: x\nDate: x\n" + stream + "\nDate: y",
         isUnknown + " | " + table + "HTTP/1.1 200 OK | " + isUnknown + " | " + isUnknown + " | " +
             table + "Date: x | type=STR | " + isUnknown,
         "1 blank line"},
        {"", "SOURCETABLE 200 OK\nDate: z\nENDSOURCETABLE\nDate: y",
         table + "SOURCETABLE 200 OK | " + table + "Date: z | " + table + "ENDSOURCETABLE | " +
             isUnknown},
        {"", "STR\nstr;M\n STR;M\nSOURCETABLE\nENDSOURCE", times(5, isUnknown)},
        {"", "STR;M;;;;0;;;;;;0;1;;;N;Y\nSTR;M;;;;1;;;;;;;;;;D\nNET;I;;N;N\nNET;I;;B",
         "carrierType=None nmea=false solutionType=Network authType=None fee=true | "
         "carrierType=L1 authType=Digest raw= | authType=None fee=false | authType=Basic raw="},
        {"", "STR;M\nSTR;\nCAS;;\nNET;I;;;;;;;",
         "mountpoint=M identifier= misc= raw= | mountpoint= raw= | host= raw= | identifier=I raw="},
        {"", "STR;M;;;;3\nSTR;M;;;;;;;;x\nNET;I;;BD",
         "carrierType= raw=STR;M;;;;3 | latitude= raw=STR;M;;;;;;;;x | authType= raw=NET;I;;BD"},
        {"", stream + ";;b;\n" + stream + std::string(600, 'x'),
         "misc=a;;b; | misc=a" + std::string(600, 'x')},
        {"--raw", stamp + " STR;\xFF\n" + stream + "<$GPXYZ,1>\nENDSOURCETABLE<$GPXYZ,2>",
         "received=" + stamp + R"( mountpoint=\xFF | misc=a | fields=[1] | )" + table +
             "ENDSOURCETABLE | prefix= fields=[2]"},
    });
}

TEST(kinds, fixedAndChosen) {
    const std::string all =
        "<$GPXYZ,1>\n" + motion + "\n" + tracking + "\n" + stream + "\n" + "noise\n";
    const std::string failed = isNothing + " | ";
    const std::string text = "type=TABLE text=";
    const std::string noStart = "type=null error=no start character";
    expectRecords({
        {"--raw", all, "fields=[1] | type=TSS1 | type=ATS | type=STR | " + isUnknown},
        {"--kind tss1", all, failed + isMotion + " | " + failed + failed + isNothing},
        {"--kind ats", all, failed + failed + isTracking + " | " + failed + isNothing},
        {"--kind ntrip", all,
         text + "<$GPXYZ,1> | " + text + motion + " | type=TABLE | type=STR | " + text + "noise"},
        {"--kind nmea", all, "fields=[1] | " + times(4, noStart)},
        {"--kind nmea", "ab<$GPXYZ,1>\n" + stamp + " x",
         "prefix=ab error= | received=" + stamp + " error=no start character"},
        {"--kind tss1", stamp + " " + motion + "\n" + stamp + " $GPXYZ,1",
         isMotion + " | received=" + stamp + " " + isNothing},
        {"--kind tss1 --raw", motion + "<$GPXYZ,1>", "type=TSS1"},
        {"--kind ats", "16 NOV\n1 2 3 4 B:12\n16 NOV 200 21:41:01",
         isNothing + " | type=ATS beaconId=12 date= time= error= raw=1 2 3 4 B:12 | "
                     "timeOfDay=21:41:01 date= raw=16 NOV 200 21:41:01"},
        {"--kind tss1 --strict", motion + "\r\nnoise\r\n", isMotion + " | " + isNothing},
        {"--kind ats --strict", "1 2 3 4 B:12\r\n", "type=ATS"},
        {"--kind ntrip --strict", "noise\r\n", text + "noise"},
        {"--type TSS1,ATS --type STR", all, isMotion + " | " + isTracking + " | type=STR"},
        {"--type TABLE,CAS", all + "CAS;h\nENDSOURCETABLE\n", "type=CAS | type=TABLE"},
        {"--require-checksum", motion + "\n" + moment + " B:1\n" + stream, times(3, "error=")},
    });
}

// However much of a record comes before a sentence that is whole, the sentence is not lost to it.
TEST(kinds, cutAnywhere) {
    for (const std::string& text :
         {motion, tracking, stream, stamp + " " + motion, "SOURCETABLE 200 OK"s, "Server: S"s}) {
        std::string input;
        for (std::size_t length = 0; length <= text.size(); ++length) {
            input += withChecksums(text.substr(0, length) + "<$GPXYZ,1>\n");
        }
        const std::string out = runTool({"decode"}, input).out;
        std::size_t found = 0;
        for (const json_t& record : readRecords(out, input)) {
            found += record.contains("fields") && !record.contains("checksum") ? 1U : 0U;
        }
        EXPECT_EQ(found, text.size() + 1) << text;
    }
}

// The list of values and the recording, which holds every kind, name the same ones.
TEST(kinds, fieldsAreComplete) {
    std::map<std::string, std::set<std::string>> listed;
    std::istringstream list(runTool({"fields"}).out);
    for (std::string line; std::getline(list, line);) {
        const texts_t cells = words(line);
        listed[cells.at(0)].insert(cells.at(1) == "address," ? "address" : cells.at(1));
    }
    EXPECT_EQ(listed.erase("type"), 1) << "the head";
    const texts_t common =
        words("source line offset received prefix type talker time checksum fields raw");
    std::map<std::string, std::set<std::string>> printed;
    const std::string input = contentOf(KALO_EXAMPLES "/recordings/voyage.log");
    for (const json_t& record : readRecords(runTool({"decode"}, input).out, input)) {
        for (const auto& member : record.items()) {
            if (record["type"].is_string() &&
                std::count(common.begin(), common.end(), member.key()) == 0) {
                printed[record["type"]].insert(member.key());
            }
        }
    }
    EXPECT_EQ(listed, printed);
}

} // namespace
