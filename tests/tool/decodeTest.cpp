// `kalo decode` as a program; how the rows are written stands in toolOutput.h.
#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/tool/runTool.h"
#include "tests/tool/toolOutput.h"

namespace {

using namespace std::string_literals;

const std::string stamp = "2014-08-01T00:00:00.316000Z";
const std::string tooLong(70000, 'x');
const std::string one = "<$GPXYZ,1>";

TEST(decode, lines) {
    expectRecords({
        {"--raw", "", ""},
        {"--raw", one + "\n<$GPXYZ,2>\r<$GPXYZ,3>\r\n<$GPXYZ,4>",
         "line=1 offset=0 fields=[1] error= checksum= raw=<$GPXYZ,1> | line=2 offset=12 fields=[2] "
         "| line=3 offset=24 fields=[3] | line=4 offset=37 fields=[4] checksum= raw=<$GPXYZ,4>"},
        // A run of CR and LF is one line end; a blank breaks it, and without an LF each CR is one.
        {"--raw", one + "\r\r\r\n<$GPXYZ,2>", "line=1 | line=2 offset=15"},
        {"--raw", one + "\r\r\r<$GPXYZ,2>\n\r<$GPXYZ,3>", "line=1 | line=4 | line=6 offset=27"},
        {"--raw", "\n \t\n\r\n<$GPXYZ,1>\r \r\n" + one + "\n\t", "line=4 offset=6 | line=6"},
        {"", one + "\n<$GPXYZ,2~>\n$GPXYZ,2*",
         "raw= | raw=<$GPXYZ,2~> | error=bad checksum digits raw=$GPXYZ,2*"},
        {"--strict --raw", one + "\r\n\n<$GPXYZ,2>\n<$GPXYZ,3>\r<$GPXYZ,4>",
         "line=1 fields=[1] error= | line=3 type=null error=no line end raw=<$GPXYZ,2> | "
         "line=4 error=no line end | line=5 error=no line end"},
        {"--strict --raw", one + "\r\r\n<$GPXYZ,2>\r\n",
         "error=bad checksum digits raw=<$GPXYZ,1> | line=2 checksum="},
        {"--strict --raw", stamp + " " + one + "\r\nx" + one + "\r\n" + one + one + "\r\n",
         "received= prefix= error=no start character | prefix= error=no start character | "
         "error=checksum mismatch raw=<$GPXYZ,1><$GPXYZ,1>"},
        {"--raw", std::string(65536, 'x') + "\n" + one, "error=not a known record | error="},
        {"--raw", std::string(65537, 'x') + "\r\n" + one,
         "line=1 error=line too long | line=1 offset=65536 error=line too long raw=x | line=2 "
         "error="},
        {"--raw", stamp + " " + tooLong + "\n" + one,
         "received=" + stamp + " error=line too long | received=" + stamp + " | received= line=2"},
        {"--raw", one + tooLong, "error=line too long prefix= received= | error=line too long"},
        {"--raw --strict", tooLong + "\r\n<$GPXYZ,1>\r\n",
         "error=line too long | error=line too long | line=2 error="},
    });
}

TEST(decode, stamps) {
    for (const std::string accepted :
         {"2014-08-01T00:00:00.316000Z ", "2014-08-01t00:00:00.5\t", "2014-08-01 23:59:60Z,",
          "2014-12-31T23:59:59+01:30,", "2014-12-31T23:59:59.25-0800 ", "2014-01-01T00:00:00\t"}) {
        const std::string received = accepted.substr(0, accepted.size() - 1);
        expectRecords({{"--raw", accepted + one + "\n" + one,
                        "received=" + received + " prefix= offset=0 error= | received="}});
    }
    for (const std::string refused :
         {"2014-08-01", "00:00:00Z", "2014-08-01X00:00:00Z", "2014-13-01T00:00:00Z",
          "2014-08-32T00:00:00Z", "2014-08-01T25:00:00Z", "2014-08-01T00:60:00Z",
          "2014-08-01T00:00:00.Z", "x2014-08-01T00:00:00Z", "2014-08-01T00:00:00Zx"}) {
        expectRecords({{"", refused + " " + one, "received= error= prefix=" + refused + " "}});
    }
    const std::string got = "received=" + stamp + " ";
    expectRecords({
        {"--raw", stamp + "$GPXYZ,1", "received= prefix=" + stamp},
        {"--raw", stamp + " noise",
         got + "prefix= error=not a known record raw=" + stamp + " noise"},
        {"", stamp + ",<$GPXYZ,1~>", got + "error=checksum mismatch raw=" + stamp + ",<$GPXYZ,1~>"},
        {"", stamp + "\tgps1: " + one, got + "prefix=gps1:  raw="},
        {"", stamp + " " + stamp + " " + one, got + "prefix=" + stamp + " "},
        {"--raw", stamp + " " + one + "x<$GPXYZ,2>", // each record of the line shows it
         got + "offset=0 | " + got + "error=cut raw=x | " + got + "error= raw=<$GPXYZ,2>"},
    });
}

TEST(decode, startsAndPrefixes) {
    const std::string unknown = "type=null prefix= error=not a known record";
    expectRecords({
        {"", "noise" + one, "prefix=noise fields=[1] raw="},
        {"", "noise<$GPXYZ,1~>", "prefix=noise error=checksum mismatch raw=noise<$GPXYZ,1~>"},
        {"", R"(\g:1-2-7*00\<!AIVDM,1>)", R"(prefix=\\g:1-2-7*00\\ type=VDM talker=AI)"},
        {"", "Error! disk full\nx$GPX,1", unknown + " | " + unknown},
        {"", "x$1PXYZ,1\nx$GPxYZ,1\nx$GPXYZ", unknown + " | " + unknown + " | " + unknown},
        {"", "x$P1XY,1", "prefix=x address=$P1XY"},
        {"", "$\n!\n$x,1\n$1", // at the beginning of a line a start is enough
         "address=$ fields=[] checksum=false talker= | address=! | address=$x | address=$1"},
    });
}

TEST(decode, joinedAndCut) {
    const std::string cut = "type=null error=cut stated= raw=";
    const std::string nested = "$GPXYZ,1*51,2";
    const std::string whole = nested + "*" + checksumOf(nested);
    const std::string inner = withChecksums("<$GPTXT,$GPXYZ,1>");
    const std::string sum = checksumOf(withChecksums("$GPTXT," + one));
    expectRecords({
        {"--raw", one + "<!AIVDM,2>", "offset=0 raw=<$GPXYZ,1> | line=1 offset=11 type=VDM"},
        {"", "<$GPXYZ,0~>" + one, cut + "<$GPXYZ,0~> | fields=[1]"},
        {"", one + "<$GPXYZ,2~>", "fields=[1] | " + cut + "<$GPXYZ,2~>"},
        {"", one + "$GPXYZ,2", "fields=[1] checksum= | " + cut + "$GPXYZ,2"},
        {"", "$" + one, "prefix=$ fields=[1] raw="},
        {"--raw", one + " \t", "fields=[1] raw=<$GPXYZ,1> \t"},
        {"", one + "*ZZ\n" + one + "*00", "error= | " + cut + "*ZZ | error= | " + cut + "*00"},
        {"", "ab" + one + "c$d" + one, "prefix=ab | " + cut + "c$d | prefix= fields=[1]"},
        // The first *hh that matches, but as it stands before its parts.
        {"", "<$GPXYZ,1*00,2>x", "fields=[1*00,2] | " + cut + "x"},
        {"", whole, "fields=[1*51,2] error="},
        {"", whole + "x", "fields=[1] error= | " + cut + whole.substr(11) + "x"},
        // The whole line only where no piece matches.
        {"", "$GPXYZ,1$GPXYZ,2*00", cut + "$GPXYZ,1 | " + cut + "$GPXYZ,2*00"},
        {"", "ab" + inner + "cd", "prefix=ab fields=[$GPXYZ,1] | " + cut + "cd"},
        {"", "$GPTXT," + one + "*" + sum, cut + "$GPTXT, | fields=[1] | " + cut + "*" + sum},
        {"", "$GPXYZ,1*00,2", "error=bad checksum digits"},
        {"", "$GPXYZ,K*2bx", "fields=[K] error= | " + cut + "x"},
    });
}

TEST(decode, recordsAndErrors) {
    expectRecords({
        {"", "<$ABCDEHDT,1>\n<$GGA,1>", "type=HDT talker=ABCDE address= | type=GGA talker="},
        {"", "<$GPALM,1>\n<!AIVDM,1>\n<$AIVDM,1>",
         "type=ALM talker=GP address=$GPALM fields=[1] | type=VDM talker=AI address=!AIVDM | "
         "type=null talker=AI address=$AIVDM"},
        {"", "<$PZWBGGA,1>\n<$PGRME,1>\n<$PXGGA,1>\n<$AB,1>\n<$GPXYZ>",
         "type=PZWBGGA talker= address= | type=null talker= address=$PGRME | type=GGA talker= | "
         "type=null talker= | talker=GP address=$GPXYZ fields=[]"},
        // What does not decode is kept in the bytes, where something was sent.
        {"", "<$GPGGA,,4807.038,,01131.0,E,1,,,,M>",
         "latitude= longitude=11.5166666666667 quality=1 altitude= "
         "raw=<$GPGGA,,4807.038,,01131.0,E,1,,,,M>"},
        {"", "<$GPGGA,,,,,,x>\n<$GPGGA,,,,,,,,1e999>",
         "quality= raw=<$GPGGA,,,,,,x> | hdop= raw=<$GPGGA,,,,,,,,1e999>"},
        {"", "<$GPGGA,,,,,,,,,,,,,,>\n<$GPGGA>\n<$GPXYZ,,a,>", "raw= | raw= | fields=[,a,] raw="},
        {"", "$GPGGA,,,,,,1\n$GPXYZ,1",
         "quality=1 checksum=false raw= | checksum=false fields=[1]"},
        {"--require-checksum", "$GPGGA,,,,,,1\nx$GPXYZ,1\n" + one,
         "type=null talker= quality= checksum= error=no checksum raw=$GPGGA,,,,,,1 | "
         "prefix=x error=no checksum | error= fields=[1]"},
        {"", "$GPXYZ,1*00\n$GPXYZ,J*0a\n$GPXYZ,1*ZZ\n$GPXYZ,1*-1",
         "type=null talker= fields= address= error=checksum mismatch stated=00 computed=51 | "
         "stated=0A computed=2A | error=bad checksum digits stated= computed= raw=$GPXYZ,1*ZZ | "
         "error=bad checksum digits"},
        {"--type RMC,PZWBGGA --type VDM", "<$GPGGA,1>\n<$GPRMC,1>\n<!AIVDM,1>\n<$PZWBGGA,1>",
         "type=RMC | type=VDM | type=PZWBGGA"},
        {"--only-valid", "<$GPGGA,1>\n<$GPXYZ,1~>\nnoise\n<$GPXYZ,2>x", "type=GGA | fields=[2]"},
    });
    const std::string input = "<$GPGGA,1>\r\r<$GPXYZ,1>x\n$GPXYZ,1*00\n \n<$GPXYZ,2>y";
    const char* counts = "6 records: 1 decoded, 2 untyped, 3 malformed; 2 cut; "
                         "1 checksum mismatch; 2 blank lines";
    expectRecords({
        {"--type GGA", input, "type=GGA", counts},
        {"--only-valid", input, "type=GGA | fields=[1] | fields=[2]", counts},
    });
}

TEST(decode, bytes) {
    const texts_t rows[] = {
        // as sent, and as a reader of the JSON gets it
        {"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"},
        {"\xEF\xBF\xBF\xF4\x8F\xBF\xBF\x7F", "\xEF\xBF\xBF\xF4\x8F\xBF\xBF\x7F"},
        {"\xFF-\xC3-\x80", R"(\xFF-\xC3-\x80)"},
        {"\xC0\x80\xC1\xBF\xE0\x9F\xBF", R"(\xC0\x80\xC1\xBF\xE0\x9F\xBF)"}, // overlong
        {"\xF0\x8F\xBF\xBF\xED\xA0\x80", R"(\xF0\x8F\xBF\xBF\xED\xA0\x80)"},
        {"\xF4\x90\x80\x80\xF5", R"(\xF4\x90\x80\x80\xF5)"},
        {"\xE2\x82\xF0\x9F\x98\xC3\xA9", R"(\xE2\x82\xF0\x9F\x98)" + "\xC3\xA9"s},
        {R"(\x41\)", R"(\\x41\\)"},
        {"\"/\x01\x1F\t\0end"s, "\"/\x01\x1F\t\0end"s},
    };
    for (const texts_t& row : rows) {
        const std::string input = withChecksums(row[0] + "<$GPXYZ," + row[0] + ">");
        const auto records = readRecords(runTool({"decode", "--raw"}, input).out, input);
        ASSERT_EQ(records.size(), 1) << row[1];
        EXPECT_EQ(records[0]["prefix"], row[1]);
        EXPECT_EQ(records[0]["fields"][0], row[1]);
    }
}

// As they are printed, to the digit.
TEST(decode, numbers) {
    const texts_t rows[] = {
        {",8424.0,N", "latitude:84.4"},
        {",8424.0,S", "latitude:-84.4"},
        {",0000.00001,N", "latitude:1.66666666666667e-07"},
        {",,,17959.99999999,E", "longitude:179.999999999833"},
        {",,,,,,,0.1,0.30000000000000004", "hdop:0.1,altitude:0.30000000000000004"},
        {",,,,,,,1.50,-0012.0", "hdop:1.5,altitude:-12"},
        {",,,,,,,,1e21", "altitude:1e+21"},
        {"001043.", "timeOfDay:00:10:43"},
        {"001043.000", "timeOfDay:00:10:43.000"},
        {"996199.9", "timeOfDay:99:61:99.9"},
    };
    for (const texts_t& row : rows) {
        std::string out = runTool({"decode"}, withChecksums("<$GPGGA," + row[0] + ">")).out;
        out.erase(std::remove(out.begin(), out.end(), '"'), out.end());
        std::replace(out.begin(), out.end(), '}', ',');
        expectParts(out, "," + row[1] + ",");
    }
    expectRecords({{"--radians", "<$GPGGA,,8424.0,S,,,,,0.1,84.4>",
                    "latitude=" + json_t(-84.4 * 3.14159265358979323846 / 180).dump() +
                        " hdop=0.1 altitude=84.4"}});
}

// Files that last as long as the object.
struct folder_t {
    folder_t() { std::filesystem::create_directory(path); }
    folder_t(const folder_t&) = delete;
    folder_t& operator=(const folder_t&) = delete;
    ~folder_t() { std::filesystem::remove_all(path); }

    std::string file(const std::string& name, const std::string& content) const {
        std::ofstream(path + "/" + name, std::ios::binary) << content;
        return path + "/" + name;
    }
    const std::string path = testing::TempDir() + "kalo-tool-" + std::to_string(getpid());
};

TEST(decode, severalInputs) {
    const folder_t folder;
    const std::string first = folder.file("a\"\\\xFF.log", withChecksums("\n<$GPXYZ,1>"));
    const std::string second = folder.file("b.log", withChecksums("<$GPXYZ,2>\r"));
    const std::string missing = folder.path + "/missing";
    const result_t all = runTool({"decode", "--quiet", first, missing, folder.path, "-", second},
                                 withChecksums("<$GPXYZ,3>\n"));
    EXPECT_EQ(all.status, 1);
    EXPECT_EQ(all.err, "kalo: " + missing + ": No such file or directory\nkalo: " + folder.path +
                           ": Is a directory\n");
    const std::vector<json_t> records = readRecords(all.out, {});
    ASSERT_EQ(records.size(), 3) << all.out;
    EXPECT_EQ(unescape(records[0]["source"]), first);
    EXPECT_EQ(records[0]["line"], 2);
    EXPECT_EQ(records[1]["source"], "-");
    EXPECT_EQ(records[2]["source"], second);
    EXPECT_EQ(records[2]["line"], 1);
    EXPECT_EQ(runTool({"decode", "--type", "GGA", first}).status, 0) << "no word of the option";
}

TEST(decode, compressedInput) {
    const texts_t rows[] = {
        {"gzip", "\x1F\x8B\x08"},    {"bzip2", "BZh9\x31\x41\x59\x26\x53\x59"},
        {"xz", "\xFD\x37zXZ\0"s},    {"zstd", "\x28\xB5\x2F\xFD"},
        {"lz4", "\x04\x22\x4D\x18"}, {"zip", "PK\x03\x04"},
    };
    for (const texts_t& row : rows) {
        for (const std::size_t chunk : {1U, 4096U}) {
            const result_t result = runTool({"decode", "--quiet"}, row[1] + "9 $GPXYZ,2\n", chunk);
            EXPECT_EQ(result.status, 1) << row[0];
            EXPECT_EQ(result.err.rfind("kalo: -: " + row[0] + "-compressed", 0), 0) << result.err;
            EXPECT_EQ(result.out, "");
        }
        // Less than its mark is text.
        expectRecords({{"--raw", row[1].substr(0, row[1].size() - 1), "type=null"}});
    }
}

TEST(program, wrongUsage) {
    for (const char* arguments :
         {"", "code", "decode --wrong", "decode --kind tss", "decode --kind TSS1", "decode --type",
          "decode --type GGA,XXX", "encode", "encode tss2", "encode tss1 --raw",
          "encode --radians"}) {
        const result_t result = runTool(words(arguments), "$GPXYZ,1\n");
        EXPECT_EQ(result.status, 2) << arguments;
        EXPECT_EQ(result.out, "") << arguments;
        EXPECT_NE(result.err, "") << arguments;
    }
    SKIP_WITHOUT_TERMINALS(); // where the input is one: help
    for (const std::string verb : {"decode", "encode tss1", "time"}) {
        const result_t result = tool_t(words(verb), makeTerminal().theirs).wait();
        EXPECT_EQ(result.status, 2) << verb;
        EXPECT_EQ(result.out, "");
        expectParts(result.err, "usage: kalo " + words(verb)[0]);
    }
}

TEST(program, outputThatFails) {
    std::string many;
    for (int i = 0; i < 20000; ++i) {
        many += "$GPXYZ," + std::to_string(i) + "\r\n";
    }
    const folder_t folder;
    const std::string file = folder.file("many", many);
    for (const texts_t& arguments : {texts_t{"fields"}, {"decode", "--quiet", file}}) {
        const descriptor_t full(open("/dev/full", O_WRONLY | O_CLOEXEC));
        const result_t result = tool_t(arguments, makePipe().theirs, full).wait();
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.err, "kalo: standard output: No space left on device\n");
        tool_t broken(arguments, makePipe().theirs, makePipe().ours);
        const result_t closed = broken.wait();
        EXPECT_EQ(closed.status, 0);
        EXPECT_EQ(closed.err, "");
    }
    // A reader that leaves in the middle.
    tool_t left({"decode", file}, makePipe().theirs);
    expectParts(left.readLine(), "\"line\":1,");
    left.closeOutput();
    const result_t result = left.wait();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
}

void expectField(const std::string& line, const std::string& value) {
    expectParts(line, "[\"" + value + "\"]; }\n");
}

// Each record comes out before the next goes in; then comes `last`.
void feedSlowly(link_t link, const std::string& last, bool closes) {
    tool_t tool({"decode", "--quiet", "-"}, std::exchange(link.theirs, descriptor_t()));
    for (const char* value : {"first", "second", "third"}) {
        ASSERT_TRUE(link.ours.write(withChecksums("<$GPXYZ,"s + value + ">\n")));
        expectField(tool.readLine(), value);
    }
    ASSERT_TRUE(link.ours.write(last));
    link.ours = closes ? descriptor_t() : link.ours;
    const result_t result = tool.wait();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out.find("rest") != std::string::npos, closes) << result.out;
}

TEST(program, liveTerminal) {
    SKIP_WITHOUT_TERMINALS();
    feedSlowly(makeTerminal(), "\x04", false);
}

TEST(program, liveInput) {
    feedSlowly(makePipe(), "$GPXYZ,rest", true);
    // A CR ends its line at once; what follows of the line end makes no line.
    const link_t link = makePipe();
    tool_t tool({"decode", "-"}, link.theirs);
    ASSERT_TRUE(link.ours.write("$GPXYZ,a\r"));
    expectField(tool.readLine(), "a");
    ASSERT_TRUE(link.ours.write("\r"));
    EXPECT_EQ(tool.readLine(50), "");
    ASSERT_TRUE(link.ours.write("\n$GPXYZ,b\r"));
    const std::string line = tool.readLine();
    expectParts(line, R"("line":2,"offset":11,; ["b"])");
}

TEST(program, stopSignals) {
    for (const int signal : {SIGINT, SIGTERM}) {
        const link_t link = makePipe();
        tool_t tool({"decode"}, link.theirs);
        ASSERT_TRUE(link.ours.write("$GPXYZ,whole\n$GPXYZ,half"));
        expectField(tool.readLine(), "whole");
        tool.send(signal);
        const result_t result = tool.wait();
        EXPECT_EQ(result.status, 128 + signal);
        EXPECT_EQ(result.out, "") << "half a record is none";
        expectParts(result.err, "kalo: 1 record: 1 untyped");
    }
    // In full flight: whole lines, and the count is that of the lines.
    const link_t link = makePipe();
    tool_t tool({"decode"}, link.theirs);
    while (tool.readLine(0).empty()) {
        ASSERT_TRUE(link.ours.write("$GPXYZ,1\n"));
    }
    tool.send(SIGTERM);
    const result_t result = tool.wait();
    EXPECT_EQ(result.status, 143);
    const auto lines = 1 + std::count(result.out.begin(), result.out.end(), '\n');
    expectParts(result.err, "kalo: " + std::to_string(lines) + " records");
}

} // namespace
