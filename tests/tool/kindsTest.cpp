// The kinds of records in one log: how each is told from the others, and what it prints. Inputs and
// expectations are written as in the tests of `kalo decode`: "<body>" is a sentence with its
// checksum, the expected keys of a record stand in ', and null means that there is no such key.
#include <algorithm>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/tool/runTool.h"
#include "tests/tool/toolOutput.h"

namespace {

using namespace std::string_literals;

using texts_t = std::vector<std::string>;

texts_t words(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

struct row_t {
    const char* name;
    const char* options;
    std::string input;
    std::string records; // keys of each, " | " between
};

// The records of an input, which they tile and which reads the same in single bytes.
std::vector<json_t> decode(const std::string& options, const std::string& input) {
    const result_t result = runTool(words("decode --quiet " + options), input);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(runTool(words("decode --quiet " + options), input, 1).out, result.out);
    std::vector<json_t> records = readRecords(result.out, input);
    if (options.find("--raw") != options.npos) {
        expectTiling(records, input);
    }
    return records;
}

void runRow(const row_t& row) {
    SCOPED_TRACE(row.name);
    std::string left = withChecksums(row.records);
    std::replace(left.begin(), left.end(), '\'', '"');
    for (const json_t& record : decode(row.options, withChecksums(row.input))) {
        const std::size_t length = std::min(left.find(" | "), left.size());
        const json_t expected = json_t::parse("{" + left.substr(0, length) + "}");
        EXPECT_FALSE(expected.empty()) << "one more: " << record;
        for (const auto& member : expected.items()) {
            EXPECT_EQ(record.value(member.key(), json_t()), member.value())
                << member.key() << " of " << record;
        }
        left.erase(0, length + 3);
    }
    EXPECT_EQ(left, "") << "is missing";
}

// The checksum of a tracking record, which covers its first byte too.
std::string trackingChecksum(const std::string& body) { return checksumOf("-" + body); }

const std::string stamp = "2014-08-01T00:00:00.316000Z";
const std::string motion = ":0A01C3 -0059U 0228 -0106";
const std::string moment = "16 NOV 2026 21:41:01:250";
const std::string tracking = moment + " B:12 X:105.2*" + trackingChecksum(moment + " B:12 X:105.2");
const std::string isMotion = "'type':'TSS1','error':null,'heave':-0.59,'raw':null";
const std::string isTracking = "'type':'ATS','error':null,'beaconX':105.2,'raw':null";
const std::string isNothing = "'type':null,'error':'nothing decodes'";
const std::string isUnknown = "'type':null,'error':'not a known record'";
const std::string stream = "STR;M;I;F;D;2;N;W;GBR;50.21;-0.01;1;0;G;C;B;N;9600;a";

TEST(kinds, motion) {
    const row_t rows[] = {
        {"all values", "", motion,
         "'type':'TSS1','talker':null,'roll':2.28,'pitch':-1.06,'heave':-0.59,"
         "'horizontalAcceleration':0.383,'verticalAcceleration':0.281875,'status':'U','raw':null"},
        {"radians", "--radians", motion,
         "'roll':" + json_t(228 * 0x1.6e05a695f8191p-13).dump() + ",'heave':-0.59"},
        {"each column that does not decode", "",
         ":xA01C3 -0059U 0228 -0106\n:0A01CX -0059U 0228 -0106\n:0A01C3 +0059U 0228 -0106\n"
         ":0A01C3 -0059X 0228 -0106\n:0A01C3 -0059U 02x8.-0106\n:0A01C3 -0059U 0228 -106 \n",
         "'horizontalAcceleration':null,'roll':2.28,'raw':':xA01C3 -0059U 0228 -0106' | "
         "'verticalAcceleration':null,'status':'U','raw':':0A01CX -0059U 0228 -0106' | "
         "'heave':null,'pitch':-1.06,'raw':':0A01C3 +0059U 0228 -0106' | "
         "'status':null,'heave':-0.59,'raw':':0A01C3 -0059X 0228 -0106' | "
         "'roll':null,'pitch':-1.06,'raw':':0A01C3 -0059U 02x8.-0106' | "
         "'pitch':null,'roll':2.28,'raw':':0A01C3 -0059U 0228 -106 '"},
        {"nothing decodes", "--raw", ":\n:0A01C3 -0059U 0228 -010\n:xxxxxx xxxxxxxxxxx xxxxx",
         isNothing + ",'raw':':' | " + isNothing + " | " + isNothing},
        {"each line end", "--raw", motion + "\n" + motion + "\r" + motion + "\r\r\n" + motion,
         "'line':1,'pitch':-1.06 | 'line':2,'offset':26,'pitch':-1.06 | 'line':3,'error':null | "
         "'line':4,'pitch':-1.06"},
        {"each line end, strict", "--strict --raw",
         motion + "\n" + motion + "\r" + motion + "\r\n" + motion,
         "'type':'TSS1' | 'type':'TSS1' | 'type':'TSS1' | 'type':'TSS1'"},
        {"a stamp", "", stamp + " " + motion + "\n" + stamp + "," + motion,
         "'received':'" + stamp + "','prefix':null,'time':null," + isMotion + " | " + isMotion},
        {"strict: no stamp", "--strict", stamp + " " + motion + "\r\n",
         "'error':'no start character','received':null"},
        {"in front of a sentence", "--raw", stamp + " " + motion + "<$GPXYZ,1><$GPXYZ,2>",
         "'type':'TSS1','offset':0 | 'offset':53,'prefix':null,'fields':['1'],'received':'" +
             stamp + "' | 'fields':['2']"},
        {"and one without a checksum", "", motion + "$GPXYZ,1\n:12<$GPXYZ,2>",
         isMotion + " | 'type':null,'error':'cut' | " + isNothing +
             ",'raw':':12' | 'fields':['2']"},
        {"behind one, and not at the start", "", "<$GPXYZ,1>" + motion + "\n " + motion,
         "'fields':['1'] | 'error':'cut','raw':'" + motion + "' | " + isUnknown},
    };
    for (const row_t& row : rows) {
        runRow(row);
    }
}

TEST(kinds, tracking) {
    const std::string behind = "\n<$GPGLL,,,,,000001>";
    const std::string late = "16 NOV 2026 23:59:59:900 B:12";
    const std::string wrong = "'type':'ATS','time':null,'beaconId':'12','timeOfDay':'23:59:59.900',"
                              "'date':'2026-11-16','error':";
    const row_t rows[] = {
        {"all values", "",
         moment + " B:7 X:1.5 Y:-2 D:3 P:-4.5 R:5 H:271.3 E:x AP:6 AR:7 CS:8 CD:9.25 SX:10 SY:11 "
                  "SH:0.8 SQ:2",
         "'type':'ATS','time':'2026-11-16T21:41:01.250Z','timeOfDay':'21:41:01.250','date':"
         "'2026-11-16','beaconId':'7','beaconNumber':7,'beaconX':1.5,'beaconY':-2.0,'beaconDepth':"
         "3.0,'vesselPitch':-4.5,'vesselRoll':5.0,'vesselHeading':271.3,'errorCode':'x',"
         "'anglePitchTelemetry':6.0,'angleRollTelemetry':7.0,'currentFlowSpeed':8.0,"
         "'currentFlowDirection':9.25,'vesselPositionX':10.0,'vesselPositionY':11.0,"
         "'vesselPositionHdop':0.8,'vesselPositionQuality':2,'raw':null"},
        {"values that do not decode", "", moment + " B:A7 X:1:2 SQ: Q:9",
         "'beaconId':'A7','beaconNumber':null,'beaconX':null,'raw':'" + moment +
             " B:A7 X:1:2 SQ: Q:9'"},
        {"what makes one", "",
         "1 jan 99 0:00:00 Q:\n  16  NOV  2026  21:41:01  junk B:12\n" + tracking,
         "'type':'ATS','date':'1999-01-01','timeOfDay':'00:00:00' | 'type':'ATS','beaconId':'12',"
         "'time':'2026-11-16T21:41:01Z' | " +
             isTracking},
        {"what does not", "",
         moment + "\n" + moment + " junk\n" + moment +
             "*B:12\n16 NOV 2026 B:12 X:1\n"
             "16 11 2026 21:41:01 B:1\n32 NOV 2026 21:41:01 B:1\n16 NOV 2026 21:41:01.250 B:1\n"
             "16 NOV 2026 24:00:00 B:1\n16\tNOV 2026 21:41:01 B:1",
         isUnknown + " | " + isUnknown + " | " + isUnknown + " | " + isUnknown + " | " + isUnknown +
             " | " + isUnknown + " | " + isUnknown + " | " + isUnknown + " | " + isUnknown},
        {"line ends, stamp, sentence", "--raw",
         stamp + "," + tracking + "\r" + tracking + "\r\n" + tracking + "<$GPXYZ,1>",
         "'received':'" + stamp +
             "','beaconX':105.2,'error':null | 'line':2,'beaconX':105.2 | "
             "'line':3,'error':null,'beaconX':105.2 | 'line':3,'prefix':null,'fields':['1']"},
        {"strict", "--strict", tracking + "\n" + tracking, isTracking + " | " + isTracking},
        {"it dates the input", "", late + "*" + trackingChecksum(late) + behind,
         "'time':'2026-11-16T23:59:59.900Z' | 'type':'GLL','time':'2026-11-17T00:00:01Z'"},
        {"a wrong one does not", "", late + "*00" + behind,
         wrong + "'checksum mismatch','stated':'00','computed':'" + trackingChecksum(late) +
             "','raw':'" + late + "*00' | 'type':'GLL','time':null"},
        {"nor moves the day", "--date 2014-08-01", late + "*00" + behind,
         wrong + "'checksum mismatch' | 'time':'2014-08-01T00:00:01Z'"},
        {"nor does a day that is not in the calendar", "", "31 FEB 2026 23:59:59 B:1" + behind,
         "'type':'ATS','date':'2026-02-31','time':null,'error':null | 'time':null"},
        {"bad checksum digits", "",
         late + "*\n" + late + "*3\n" + late + "*333\n" + late + "*G3" + behind,
         wrong + "'bad checksum digits','stated':null,'raw':'" + late + "*' | " + wrong +
             "'bad checksum digits' | " + wrong + "'bad checksum digits' | " + wrong +
             "'bad checksum digits','computed':null | 'time':null"},
        {"small digits, and text behind them", "", moment + " B:12*1axyz\n" + moment + " B:12*1a",
         "'error':'checksum mismatch','stated':'1A' | 'stated':'1A'"},
        {"--only-valid", "--only-valid", late + "*00\n" + late + "*\n" + tracking, isTracking},
        {"--type", "--type ATS", late + "*00\n" + motion + "\n" + tracking,
         "'error':'checksum mismatch' | " + isTracking},
    };
    for (const row_t& row : rows) {
        runRow(row);
    }
    const std::string closing = runTool({"decode"}, late + "*00\n" + late + "*\n" + tracking).err;
    for (const char* part :
         {"1 decoded", "2 malformed", "1 checksum mismatch", "1 bad checksum digits"}) {
        EXPECT_NE(closing.find(part), closing.npos) << part << " is not in " << closing;
    }
}

// Behind the third colon stands a number, which prints as the digits of a fraction.
TEST(kinds, trackingMilliseconds) {
    const auto withTime = [](const std::string& text) { return "1 JAN 2026 " + text + " B:1\n"; };
    std::string input = withTime("21:41:59:") + withTime("21::41:59") + withTime("21:41:59");
    texts_t expected(3, "21:41:59");
    for (int i = 0; i < 1000; ++i) {
        input += withTime("21:41:59:" + std::to_string(i));
        expected.push_back("21:41:59." + std::to_string(1000 + i).substr(1));
    }
    const std::vector<json_t> records = readRecords(runTool({"decode"}, input).out, input);
    ASSERT_EQ(records.size(), expected.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        EXPECT_EQ(records[i]["timeOfDay"], expected[i]) << records[i];
        EXPECT_EQ(records[i]["time"], "2026-01-01T" + expected[i] + "Z");
    }
}

TEST(kinds, sourcetables) {
    const std::string table = "'type':'TABLE','error':null,'text':";
    const std::string values =
        "'type':'STR','mountpoint':'M','identifier':'I','format':'F','formatDetails':'D',"
        "'carrierType':'L1L2','navSystem':'N','network':'W','country':'GBR','latitude':50.21,"
        "'longitude':-0.01,'nmea':true,'solutionType':'Single','generator':'G','compression':'C',"
        "'authType':'Basic','fee':false,'bitrate':9600,'misc':'a','raw':null";
    const row_t rows[] = {
        {"a whole one", "--raw",
         "SOURCETABLE 200 OK\r\nServer: S/1\r\n\r\nX-Any: b: c\r\n" + stream +
             "\r\nCAS;h;2101;I;O;0;GBR;50.21;-0.01;g;22;a;b\r\n"
             "NET;I;O;D;Y;w;s;r;a;\r\nENDSOURCETABLE\r\nServer: S/1\r\n",
         table + "'SOURCETABLE 200 OK' | " + table + "'Server: S/1' | 'line':4," + table +
             "'X-Any: b: c' | 'type':'STR' | 'type':'CAS','host':'h','port':2101,'identifier':'I',"
             "'operator':'O','nmea':false,'country':'GBR','latitude':50.21,'longitude':-0.01,"
             "'fallbackHost':'g','fallbackPort':22,'misc':'a;b' | 'type':'NET','identifier':'I',"
             "'operator':'O','authType':'Digest','fee':true,'webNet':'w','webStr':'s','webReg':'r',"
             "'misc':'a;' | " +
             table + "'ENDSOURCETABLE' | " + isUnknown},
        {"all of a stream", "", stream, values},
        {"latitude is as sent", "--radians", stream, values},
        {"header lines: only behind a status line, up to the first record", "",
         "Server: S\nHTTP/1.1 200 OK\nnoise\nbad name: x\nDate: x\n" + stream +
             "\nDate: y\nSOURCETABLE 200 OK\nDate: z\nENDSOURCETABLE\nDate: y",
         isUnknown + " | " + table + "'HTTP/1.1 200 OK' | " + isUnknown + " | " + isUnknown +
             " | " + table + "'Date: x' | 'type':'STR' | " + isUnknown + " | " + table +
             "'SOURCETABLE 200 OK' | " + table + "'Date: z' | " + table + "'ENDSOURCETABLE' | " +
             isUnknown},
        {"not quite", "", "STR\nstr;M\n STR;M\nSOURCETABLE\nENDSOURCE",
         isUnknown + " | " + isUnknown + " | " + isUnknown + " | " + isUnknown + " | " + isUnknown},
        {"words and flags", "",
         "STR;M;;;;0;;;;;;0;1;;;N;Y\nSTR;M;;;;1;;;;;;;;;;D\nNET;I;;N;N\nNET;I;;B",
         "'carrierType':'None','nmea':false,'solutionType':'Network','authType':'None','fee':true "
         "| "
         "'carrierType':'L1','authType':'Digest','raw':null | 'authType':'None','fee':false | "
         "'authType':'Basic','raw':null"},
        {"short records and empty fields", "", "STR;M\nSTR;\nCAS;;\nNET;I;;;;;;;",
         "'mountpoint':'M','identifier':null,'misc':null,'raw':null | 'type':'STR','mountpoint':"
         "null,'raw':null | 'type':'CAS','host':null,'raw':null | 'identifier':'I','raw':null"},
        {"fields that do not decode", "",
         "STR;M;;;;3\nSTR;M;;;;;;;;x\nSTR;M;;;;;;;;;;2\nSTR;M;;;;;;;;;;;2\nSTR;M;;;;;;;;;;;;;;b\n"
         "STR;M;;;;;;;;;;;;;;;y\nSTR;M;;;;;;;;;;;;;;;;9k\nCAS;h;x\nNET;I;;BD\nNET;I;;;n",
         "'carrierType':null,'raw':'STR;M;;;;3' | 'latitude':null,'raw':'STR;M;;;;;;;;x' | "
         "'nmea':null,'raw':'STR;M;;;;;;;;;;2' | 'solutionType':null,'raw':'STR;M;;;;;;;;;;;2' | "
         "'authType':null,'raw':'STR;M;;;;;;;;;;;;;;b' | 'fee':null,'raw':'STR;M;;;;;;;;;;;;;;;y' "
         "| "
         "'bitrate':null,'mountpoint':'M','raw':'STR;M;;;;;;;;;;;;;;;;9k' | 'port':null,'raw':"
         "'CAS;h;x' | 'authType':null,'raw':'NET;I;;BD' | 'fee':null,'raw':'NET;I;;;n'"},
        {"misc is all that follows", "",
         stream + ";;b;\nSTR;M;;;;;;;;;;;;;;;;;;b\n" + std::string(stream).append(600, 'x'),
         "'misc':'a;;b;' | 'misc':';b' | 'misc':'a" + std::string(600, 'x') + "'"},
        {"stamp, sentence, bytes", "--raw",
         stamp + " STR;\xFF\n" + stream + "<$GPXYZ,1>\nENDSOURCETABLE<$GPXYZ,2>",
         "'received':'" + stamp + R"(','mountpoint':'\\xFF' | 'misc':'a' | 'fields':['1'] | )" +
             table + "'ENDSOURCETABLE' | 'prefix':null,'fields':['2']"},
    };
    for (const row_t& row : rows) {
        runRow(row);
    }
    EXPECT_NE(runTool({"decode"}, "HTTP/1.1 200 OK\n\n" + stream).err.find("1 blank lines"),
              std::string::npos);
}

TEST(kinds, fixedAndChosen) {
    const std::string noise = "noise\n";
    const std::string all =
        "<$GPXYZ,1>\n" + motion + "\n" + tracking + "\n" + stream + "\n" + noise;
    const std::string failed = isNothing + " | ";
    const std::string text = "'type':'TABLE','text':";
    const std::string noStart = "'type':null,'error':'no start character'";
    const row_t rows[] = {
        {"by itself", "--raw", all,
         "'fields':['1'] | 'type':'TSS1' | 'type':'ATS' | 'type':'STR' | " + isUnknown},
        {"tss1", "--kind tss1", all, failed + isMotion + " | " + failed + failed + isNothing},
        {"ats", "--kind ats", all, failed + failed + isTracking + " | " + failed + isNothing},
        {"ntrip", "--kind ntrip", all,
         text + "'<$GPXYZ,1>' | " + text + "'" + motion + "' | " + text + "'" + tracking +
             "' | 'type':'STR' | " + text + "'noise'"},
        {"nmea", "--kind nmea", all,
         "'fields':['1'] | " + noStart + " | " + noStart + " | " + noStart + " | " + noStart},
        {"a stamp stays one", "--kind tss1", stamp + " " + motion + "\n" + stamp + " $GPXYZ,1",
         isMotion + " | 'received':'" + stamp + "'," + isNothing},
        {"a line is not cut", "--kind tss1 --raw", motion + "<$GPXYZ,1>", "'type':'TSS1'"},
        {"what stands in a part of one", "--kind ats", "16 NOV\n1 2 3 4 B:12\n16 NOV 200 21:41:01",
         isNothing + " | 'type':'ATS','beaconId':'12','date':null,'time':null,'error':null,'raw':"
                     "'1 2 3 4 B:12' | 'timeOfDay':'21:41:01','date':null,'raw':"
                     "'16 NOV 200 21:41:01'"},
        {"strict too", "--kind tss1 --strict", motion + "\r\nnoise\r\n$GPXYZ,1\r\n",
         isMotion + " | " + isNothing + " | " + isNothing},
        {"ats, strict", "--kind ats --strict", "1 2 3 4 B:12\r\n", "'type':'ATS'"},
        {"ntrip, strict", "--kind ntrip --strict", "noise\r\n", text + "'noise'"},
        {"--type", "--type TSS1,ATS --type STR", all,
         isMotion + " | " + isTracking + " | 'type':'STR'"},
        {"--type TABLE", "--type TABLE,CAS,NET", all + "CAS;h\nNET;I\nENDSOURCETABLE\n",
         "'type':'CAS' | 'type':'NET' | 'type':'TABLE'"},
        {"--require-checksum is for sentences", "--require-checksum",
         motion + "\n" + moment + " B:1\n" + stream, isMotion + " | 'error':null | 'error':null"},
    };
    for (const row_t& row : rows) {
        runRow(row);
    }
    for (const char* kind : {"xyz", "TSS1", "str", ""}) {
        const result_t result = runTool({"decode", "--kind", kind}, motion);
        EXPECT_EQ(result.status, 2) << kind;
        EXPECT_EQ(result.out, "") << kind;
    }
}

// However much of a record comes before a sentence that is whole, the sentence is not lost to it.
TEST(kinds, cutAnywhere) {
    std::string input;
    for (const std::string& text : {motion, tracking, stream, stamp + " " + motion,
                                    "SOURCETABLE 200 OK"s, "Server: S"s, "ENDSOURCETABLE"s}) {
        for (std::size_t length = 0; length <= text.size(); ++length) {
            input += text.substr(0, length) + "<$GPXYZ,1>\n";
        }
    }
    input = withChecksums(input);
    std::size_t line = 0;
    for (const json_t& record : decode("--raw", input)) {
        if (record.contains("fields")) {
            EXPECT_EQ(record["line"], ++line);
            EXPECT_FALSE(record.contains("checksum")) << record;
        }
    }
    EXPECT_EQ(line, std::count(input.begin(), input.end(), '\n'));
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
    std::ifstream file(KALO_EXAMPLES "/recordings/voyage.log", std::ios::binary);
    const std::string input{std::istreambuf_iterator<char>(file), {}};
    const std::set<std::string> common = {"source",   "line",   "offset", "received",
                                          "prefix",   "type",   "talker", "time",
                                          "checksum", "fields", "raw"};
    std::map<std::string, std::set<std::string>> printed;
    for (const json_t& record : readRecords(runTool({"decode"}, input).out, input)) {
        for (const auto& member : record.items()) {
            if (record["type"].is_string() && common.count(member.key()) == 0) {
                printed[record["type"]].insert(member.key());
            }
        }
    }
    EXPECT_EQ(listed, printed);
}

} // namespace
