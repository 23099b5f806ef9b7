// `kalo decode` as a program. In inputs and expectations "<body>" is a sentence with its checksum
// and "<body~>" one with a wrong checksum; the expected keys of a record are written with '.
#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <fcntl.h>
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

texts_t decodeWith(const std::string& options) { return words("decode --quiet " + options); }

struct row_t {
    const char* name;
    const char* options;
    std::string input;
    std::string records; // keys of each, " | " between; null: no such key, or a type of null
};

void runRow(const row_t& row) {
    SCOPED_TRACE(row.name);
    const std::string input = withChecksums(row.input);
    const result_t result = runTool(decodeWith(row.options), input);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    const std::vector<json_t> records = readRecords(result.out, input);
    std::string left = withChecksums(row.records);
    std::replace(left.begin(), left.end(), '\'', '"');
    for (const json_t& record : records) {
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
    if (texts_t options = words(row.options);
        std::find(options.begin(), options.end(), "--raw") != options.end()) {
        expectTiling(records, input);
    }
    // What a read returns is decoded at once; where the input is cut does not matter.
    EXPECT_EQ(runTool(decodeWith(row.options), input, 1).out, result.out);
}

const std::string stamp = "2014-08-01T00:00:00.316000Z";
const std::string tooLong(140000, 'x');

TEST(decode, lines) {
    const row_t rows[] = {
        {"nothing", "--raw", "", ""},
        {"each line end", "--raw", "<$GPXYZ,1>\n<$GPXYZ,2>\r<$GPXYZ,3>\r\n<$GPXYZ,4>",
         "'line':1,'offset':0,'fields':['1'],'error':null,'raw':'<$GPXYZ,1>' | "
         "'line':2,'offset':12,'fields':['2'],'error':null | 'line':3,'offset':24,'fields':['3'] | "
         "'line':4,'offset':37,'fields':['4'],'checksum':null,'raw':'<$GPXYZ,4>'"},
        {"a run of CR with LF is one", "--raw", "<$GPXYZ,1>\r\r\r\n<$GPXYZ,2>",
         "'line':1 | 'line':2,'offset':15"},
        {"without LF each CR is one", "--raw", "<$GPXYZ,1>\r\r\r<$GPXYZ,2>", "'line':1 | 'line':4"},
        {"LF CR are two", "--raw", "<$GPXYZ,1>\n\r<$GPXYZ,2>", "'line':1 | 'line':3,'offset':13"},
        {"a blank breaks the run", "--raw", "<$GPXYZ,1>\r \r\n<$GPXYZ,2>", "'line':1 | 'line':3"},
        {"blank lines", "--raw", "\n \t\n\r\n<$GPXYZ,1>\n\t", "'line':4,'offset':6"},
        {"a last line that is cut", "--raw", "<$GPXYZ,1>\n$GPXYZ,2*",
         "'checksum':null | 'checksum':false,'fields':['2*']"},
        {"no raw where nothing is lost", "", "<$GPXYZ,1>\n<$GPXYZ,2~>\n",
         "'raw':null | 'raw':'<$GPXYZ,2~>'"},
        {"strict: every end but CR LF", "--strict --raw",
         "<$GPXYZ,1>\r\n\n<$GPXYZ,2>\n<$GPXYZ,3>\r<$GPXYZ,4>",
         "'line':1,'fields':['1'],'error':null | 'line':3,'error':'no line end','raw':'<$GPXYZ,2>' "
         "| 'line':4,'error':'no line end','type':null | 'line':5,'error':'no line end'"},
        {"strict: a run of CR", "--strict --raw", "<$GPXYZ,1>\r\r\n<$GPXYZ,2>\r\n",
         "'checksum':false,'raw':'<$GPXYZ,1>' | 'line':2,'checksum':null"},
        {"strict: no stamp", "--strict --raw", stamp + " <$GPXYZ,1>\r\n",
         "'received':null,'prefix':null,'error':'no start character'"},
        {"strict: no prefix", "--strict --raw", "x<$GPXYZ,1>\r\n",
         "'prefix':null,'error':'no start character'"},
        {"strict: no joined", "--strict --raw", "<$GPXYZ,1><$GPXYZ,2>\r\n",
         "'error':'checksum mismatch','raw':'<$GPXYZ,1><$GPXYZ,2>'"},
        {"64 KiB", "--raw", std::string(65536, 'x') + "\n<$GPXYZ,1>",
         "'error':'not a known record' | 'line':2,'error':null"},
        {"more", "--raw", std::string(65537, 'x') + "\r\n<$GPXYZ,1>",
         "'line':1,'offset':0,'error':'line too long' | 'line':1,'offset':65536,'error':'line too "
         "long','raw':'x' | 'line':2,'offset':65539,'error':null"},
        {"too long with a stamp", "--raw", stamp + " " + tooLong + "\n<$GPXYZ,1>",
         "'received':'" + stamp + "','error':'line too long' | 'received':'" + stamp +
             "','offset':65536 | 'received':'" + stamp +
             "','offset':131072 | 'received':null,'line':2"},
        {"too long, sentences and no end", "--raw", "<$GPXYZ,1>" + tooLong.substr(0, 70000),
         "'error':'line too long','prefix':null,'received':null | 'error':'line too long'"},
        {"too long, strict", "--raw --strict", tooLong + "\r\n<$GPXYZ,1>\r\n",
         "'error':'line too long' | 'error':'line too long' | 'error':'line too long' | "
         "'line':2,'error':null"},
    };
    for (const row_t& row : rows) {
        runRow(row);
    }
}

TEST(decode, stamps) {
    for (const std::string accepted :
         {"2014-08-01T00:00:00.316000Z", "2014-08-01t00:00:00.5", "2014-08-01 23:59:60Z",
          "2014-12-31T23:59:59+01:30", "2014-12-31T23:59:59.25-0800", "2014-01-01T00:00:00"}) {
        for (const char* separator : {" ", "\t", ","}) {
            runRow({accepted.c_str(), "--raw", accepted + separator + "<$GPXYZ,1>\n<$GPXYZ,2>",
                    "'received':'" + accepted +
                        "','prefix':null,'offset':0,'error':null | 'received':null"});
        }
    }
    for (const std::string refused :
         {"2014-08-01", "00:00:00Z", "2014-08-01X00:00:00Z", "2014-13-01T00:00:00Z",
          "2014-08-32T00:00:00Z", "2014-08-01T25:00:00Z", "2014-08-01T00:60:00Z",
          "2014-08-01T00:00:00.Z", "x2014-08-01T00:00:00Z", "2014-08-01T00:00:00Zx"}) {
        runRow({refused.c_str(), "--raw", refused + " <$GPXYZ,1>",
                "'received':null,'error':null,'prefix':'" + refused + " '"});
    }
    const std::string received = "'received':'" + stamp + "',";
    const row_t rows[] = {
        {"nothing behind it", "--raw", stamp + "$GPXYZ,1",
         "'received':null,'prefix':'" + stamp + "'"},
        {"noise behind it", "--raw", stamp + " noise",
         received + "'prefix':null,'error':'not a known record','raw':'" + stamp + " noise'"},
        {"a wrong checksum behind it", "", stamp + ",<$GPXYZ,1~>",
         received + "'error':'checksum mismatch','raw':'" + stamp + ",<$GPXYZ,1~>'"},
        {"a prefix behind it", "", stamp + "\tgps1: <$GPXYZ,1>",
         received + "'prefix':'gps1: ','raw':null"},
        {"every record of the line shows it", "--raw", stamp + " <$GPXYZ,1>x<$GPXYZ,2>",
         received + "'offset':0,'raw':'" + stamp + " <$GPXYZ,1>' | " + received +
             "'error':'cut','raw':'x' | " + received + "'error':null,'raw':'<$GPXYZ,2>'"},
        {"two: the second is a prefix", "", stamp + " " + stamp + " <$GPXYZ,1>",
         received + "'prefix':'" + stamp + " '"},
    };
    for (const row_t& row : rows) {
        runRow(row);
    }
}

TEST(decode, startsAndPrefixes) {
    const row_t rows[] = {
        {"a prefix", "", "noise<$GPXYZ,1>", "'prefix':'noise','fields':['1'],'raw':null"},
        {"of a malformed sentence", "", "noise<$GPXYZ,1~>",
         "'prefix':'noise','error':'checksum mismatch','raw':'noise<$GPXYZ,1~>'"},
        {"a tag block", "", R"(\g:1-2-7*00\<!AIVDM,1,1,,A,x,0>)",
         R"('prefix':'\\\\g:1-2-7*00\\\\','type':'VDM','talker':'AI')"},
        {"exclamation", "", "Error! disk full", "'type':null,'error':'not a known record'"},
        {"three characters", "", "x$GPX,1", "'prefix':null,'error':'not a known record'"},
        {"four", "", "x$P1XY,1", "'prefix':'x','address':'$P1XY'"},
        {"a digit first", "", "x$1PXYZ,1", "'error':'not a known record'"},
        {"a small letter", "", "x$GPxYZ,1", "'error':'not a known record'"},
        {"no comma", "", "x$GPXYZ", "'error':'not a known record'"},
        {"at the beginning $ is enough", "", "$\n!\n$x,1\n$1",
         "'address':'$','fields':[],'checksum':false,'talker':null | 'address':'!' | "
         "'address':'$x','fields':['1'] | 'address':'$1'"},
    };
    for (const row_t& row : rows) {
        runRow(row);
    }
}

TEST(decode, joinedAndCut) {
    const std::string cut = "'type':null,'error':'cut','stated':null,'raw':";
    const std::string one = "<$GPXYZ,1>";
    const std::string nested = "$GPXYZ,1*" + checksumOf("$GPXYZ,1") + ",2";
    const std::string whole = nested + "*" + checksumOf(nested);
    const std::string inner = "$GPTXT,$GPXYZ,1*" + checksumOf("$GPTXT,$GPXYZ,1");
    const std::string wholeSum = checksumOf(withChecksums("$GPTXT," + one));
    const row_t rows[] = {
        {"two", "--raw", one + "<!AIVDM,2>",
         "'line':1,'offset':0,'raw':'<$GPXYZ,1>' | 'line':1,'offset':11,'type':'VDM'"},
        {"a wrong one first", "", "<$GPXYZ,0~>" + one, cut + "'<$GPXYZ,0~>' | 'fields':['1']"},
        {"a wrong one last", "", one + "<$GPXYZ,2~>", "'fields':['1'] | " + cut + "'<$GPXYZ,2~>'"},
        {"cut by a sentence", "", "$GPXYZ,0,5" + one, cut + "'$GPXYZ,0,5' | 'fields':['1']"},
        {"no checksum behind one", "", one + "$GPXYZ,2",
         "'fields':['1'],'checksum':null | " + cut + "'$GPXYZ,2'"},
        {"$$", "", "$" + one, cut + "'$' | 'fields':['1']"},
        {"text behind the checksum", "", one + ",noise", "'fields':['1'] | " + cut + "',noise'"},
        {"a blank behind the checksum", "", one + " ", "'fields':['1'] | " + cut + "' '"},
        {"bad digits behind it", "", one + "*ZZ", "'fields':['1'] | " + cut + "'*ZZ'"},
        {"a wrong checksum behind it", "", one + "*00", "'fields':['1'] | " + cut + "'*00'"},
        {"text between", "--raw", "ab" + one + "c$d<$GPXYZ,2>e",
         "'prefix':'ab','raw':'ab<$GPXYZ,1>' | " + cut +
             "'c$d' | 'prefix':null,'raw':'<$GPXYZ,2>' | " + cut + "'e'"},
        {"one good in the middle", "", "$GPXYZ,0*ZZ" + one + "$GPXYZ,2",
         cut + "'$GPXYZ,0*ZZ' | 'fields':['1'] | " + cut + "'$GPXYZ,2'"},
        {"a wrong *hh before the right one", "",
         "$GPXYZ,1*00,2*" + checksumOf("$GPXYZ,1*00,2") + "x",
         "'fields':['1*00','2'] | " + cut + "'x'"},
        {"as it stands before its parts", "", whole,
         "'fields':['1*" + checksumOf("$GPXYZ,1") + "','2'],'error':null"},
        {"else behind the first that matches", "", whole + "x",
         "'fields':['1'],'error':null | " + cut + "'" + whole.substr(11) + "x'"},
        {"none of several matches", "", "$GPXYZ,1$GPXYZ,2*00",
         cut + "'$GPXYZ,1' | " + cut + "'$GPXYZ,2*00'"},
        {"the whole line matches", "", inner, "'address':'$GPTXT','fields':['$GPXYZ','1']"},
        {"the whole with text around", "", "ab" + inner + "cd",
         "'prefix':'ab','fields':['$GPXYZ','1'] | " + cut + "'cd'"},
        {"a piece matches, and the whole line too", "", "$GPTXT," + one + "*" + wholeSum,
         cut + "'$GPTXT,' | 'fields':['1'] | " + cut + "'*" + wholeSum + "'"},
        {"one piece without a match", "", "$GPXYZ,1*00,2",
         "'checksum':false,'fields':['1*00','2']"},
        {"small digits", "", "$GPXYZ,K*2bx", "'fields':['K'],'error':null | " + cut + "'x'"},
    };
    for (const row_t& row : rows) {
        runRow(row);
    }
}

TEST(decode, recordsAndErrors) {
    const row_t rows[] = {
        {"types and talkers", "",
         "<$GPGGA,1>\n<$GNRMC,1>\n<$ABCDEHDT,1>\n<$GGA,1>\n<$GPALM,1>\n<!AIVDM,1>\n<$AIVDM,1>\n<$"
         "PZWBGGA,1>\n<$PGRME,1>\n<$PXGGA,1>\n<$AB,1>\n<$GPXYZ>",
         "'type':'GGA','talker':'GP','address':null | 'type':'RMC','talker':'GN' | "
         "'type':'HDT','talker':'ABCDE' | 'type':'GGA','talker':null | "
         "'type':'ALM','talker':'GP','address':'$GPALM','fields':['1'] | "
         "'type':'VDM','talker':'AI','address':'!AIVDM','fields':['1'] | "
         "'type':null,'talker':'AI','address':'$AIVDM' | "
         "'type':'PZWBGGA','talker':null,'address':null | "
         "'type':null,'talker':null,'address':'$PGRME' | 'type':'GGA','talker':null | "
         "'type':null,'talker':null | 'talker':'GP','address':'$GPXYZ','fields':[]"},
        {"a value that does not decode", "",
         "<$GPGGA,,4807.038,,01131.0,E,1,,,,M>\n<$GPGGA,,,,,,x>\n<$GPGGA,,,,,,,,1e999>",
         "'latitude':null,'longitude':11.5166666666667,'quality':1,'altitude':null,'raw':'<$GPGGA,,"
         "4807.038,,01131.0,E,1,,,,M>' | 'quality':null,'raw':'<$GPGGA,,,,,,x>' | "
         "'hdop':null,'raw':'<$GPGGA,,,,,,,,1e999>'"},
        {"nothing was sent", "", "<$GPGGA,,,,,,,,,,,,,,>\n<$GPGGA>", "'raw':null | 'raw':null"},
        {"empty fields stay in an unknown one", "", "<$GPXYZ,,a,>", "'fields':['','a','']"},
        {"no checksum", "", "$GPGGA,,,,,,1\n$GPXYZ,1",
         "'type':'GGA','quality':1,'checksum':false,'raw':null | "
         "'checksum':false,'fields':['1'],'raw':null"},
        {"a checksum is asked for", "--require-checksum", "$GPGGA,,,,,,1\nx$GPXYZ,1\n<$GPXYZ,1>",
         "'type':null,'talker':null,'quality':null,'checksum':null,'error':'no "
         "checksum','raw':'$GPGGA,,,,,,1' | 'prefix':'x','error':'no checksum' | "
         "'error':null,'fields':['1']"},
        {"one checksum matches, another is bad", "",
         "$GPXYZ,1*00\n$GPXYZ,J*0a\n$GPXYZ,1*ZZ\n$GPXYZ,1*-1",
         "'type':null,'talker':null,'fields':null,'address':null,'error':'checksum "
         "mismatch','stated':'00','computed':'51' | 'error':'checksum "
         "mismatch','stated':'0A','computed':'2A' | 'error':'bad checksum "
         "digits','stated':null,'computed':null,'raw':'$GPXYZ,1*ZZ' | 'error':'bad checksum "
         "digits'"},
        {"--kind nmea", "--kind nmea", "noise\n: AB\nab<$GPXYZ,1>\n" + stamp + " x",
         "'type':null,'error':'no start character','raw':'noise' | 'error':'no start character' | "
         "'prefix':'ab','error':null | 'received':'" +
             stamp + "','error':'no start character'"},
        {"--type", "--type GGA", "<$GPGGA,1>\n<$GPRMC,1>\n<!AIVDM,1>\n<$GPGGA,1~>\n<$PZWBGGA,1>",
         "'type':'GGA'"},
        {"several types", "--type RMC,PZWBGGA --type VDM",
         "<$GPGGA,1>\n<$GPRMC,1>\n<!AIVDM,1>\n<$GPXYZ,1>\n<$PZWBGGA,1>",
         "'type':'RMC' | 'type':'VDM' | 'type':'PZWBGGA'"},
        {"--only-valid", "--only-valid", "<$GPGGA,1>\n<$GPXYZ,1~>\nnoise\n<$GPXYZ,2>x",
         "'type':'GGA' | 'fields':['2']"},
    };
    for (const row_t& row : rows) {
        runRow(row);
    }
    const std::string gga =
        "<$GPGGA,001043.00,4404.14036,N,12118.85961,W,1,12,0.98,1113.0,M,-21.3,M,5.0,0120>";
    EXPECT_EQ(runTool(decodeWith(""), withChecksums(gga + "\nx")).out,
              R"({"source":"-","line":1,"offset":0,"type":"GGA","talker":"GP",)"
              R"("timeOfDay":"00:10:43.00","latitude":44.069006,"longitude":-121.314326833333,)"
              R"("quality":1,"satCount":12,"hdop":0.98,"altitude":1113,)"
              R"("geoidalSeparation":-21.3,"diffAge":5,"refStationId":120})"
              "\n"
              R"({"source":"-","line":2,"offset":83,"type":null,"error":"not a known record",)"
              R"("raw":"x"})"
              "\n");
}

TEST(decode, bytes) {
    const struct {
        std::string bytes;
        std::string text; // as a reader of the JSON gets it
    } rows[] = {
        {"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"},
        {"\xEF\xBF\xBF\xF4\x8F\xBF\xBF\x7F", "\xEF\xBF\xBF\xF4\x8F\xBF\xBF\x7F"},
        {"\xFF-\xC3-\x80", R"(\xFF-\xC3-\x80)"},
        {"\xC0\x80\xC1\xBF\xE0\x9F\xBF\xF0\x8F\xBF\xBF", // overlong
         R"(\xC0\x80\xC1\xBF\xE0\x9F\xBF\xF0\x8F\xBF\xBF)"},
        {"\xED\xA0\x80\xF4\x90\x80\x80\xF5", R"(\xED\xA0\x80\xF4\x90\x80\x80\xF5)"},
        {"\xE2\x82\xF0\x9F\x98\xE2\x82\xAC", R"(\xE2\x82\xF0\x9F\x98)"
                                             "\xE2\x82\xAC"},
        {R"(\x41\)", R"(\\x41\\)"},
        {"\"/\x01\x1F\t\0end"s, "\"/\x01\x1F\t\0end"s},
    };
    for (const auto& row : rows) {
        const std::string body = "$GPXYZ," + row.bytes;
        const std::string input = row.bytes + body + "*" + checksumOf(body);
        const std::vector<json_t> records =
            readRecords(runTool(decodeWith("--raw"), input).out, input);
        ASSERT_EQ(records.size(), 1) << row.text;
        EXPECT_EQ(records[0]["prefix"], row.text);
        EXPECT_EQ(records[0]["fields"][0], row.text);
        EXPECT_EQ(unescape(records[0]["fields"][0]), row.bytes);
        EXPECT_EQ(unescape(records[0]["raw"]), input);
    }
}

TEST(decode, numbers) {
    const struct {
        const char* options;
        const char* fields;
        const char* text; // empty: no such key
    } rows[] = {
        {"", ",8424.0,N", R"("latitude":84.4,)"},
        {"", ",8424.0,S", R"("latitude":-84.4,)"},
        {"", ",0000.00001,N", R"("latitude":1.66666666666667e-07,)"},
        {"", ",,,17959.99999999,E", R"("longitude":179.999999999833,)"},
        {"", ",,,,,,,0.1,0.30000000000000004", R"("hdop":0.1,"altitude":0.30000000000000004,)"},
        {"", ",,,,,,,1.50,-0012.0", R"("hdop":1.5,"altitude":-12,)"},
        {"", ",,,,,,,,1e21", R"("altitude":1e+21,)"},
        {"--radians", ",,,,,,,0.1,84.4", R"("hdop":0.1,"altitude":84.4,)"},
        {"", "001043", R"("timeOfDay":"00:10:43",)"},
        {"", "001043.", R"("timeOfDay":"00:10:43",)"},
        {"", "001043.000", R"("timeOfDay":"00:10:43.000",)"},
        {"", "235960.5", R"("timeOfDay":"23:59:60.5",)"},
        {"", "996199.9", R"("timeOfDay":"99:61:99.9",)"},
        {"", "12345.5", R"("timeOfDay":"12:34:05.5",)"},
        {"", "12341e1", R"("timeOfDay":"12:34:10",)"},
    };
    for (const auto& row : rows) {
        const std::string input = withChecksums("<$GPGGA,"s + row.fields + ">");
        const std::string out = runTool(decodeWith("--raw "s + row.options), input).out;
        EXPECT_NE(out.find(row.text), std::string::npos) << row.text << " is not in " << out;
    }
    const std::string input = withChecksums("<$GPGGA,,8424.0,N>");
    const json_t record = json_t::parse(runTool(decodeWith("--radians"), input).out);
    EXPECT_DOUBLE_EQ(record["latitude"], 84.4 * 3.14159265358979323846 / 180);
}

// Files that last as long as the object.
class folder_t {
public:
    folder_t() : m_path(testing::TempDir() + "kalo-tool-" + std::to_string(getpid())) {
        std::filesystem::create_directory(m_path);
    }
    folder_t(const folder_t&) = delete;
    folder_t& operator=(const folder_t&) = delete;
    ~folder_t() { std::filesystem::remove_all(m_path); }

    std::string file(const std::string& name, const std::string& content) const {
        std::ofstream(m_path / name, std::ios::binary) << content;
        return m_path / name;
    }
    std::string path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

TEST(decode, severalInputs) {
    const folder_t folder;
    const std::string first = folder.file("a\"\\\xFF.log", withChecksums("\n<$GPXYZ,1>"));
    const std::string second = folder.file("b.log", withChecksums("<$GPXYZ,2>\r"));
    const std::string missing = folder.path() + "/missing";
    const result_t all = runTool({"decode", "--quiet", first, missing, folder.path(), "-", second},
                                 withChecksums("<$GPXYZ,3>\n"));
    EXPECT_EQ(all.status, 1);
    EXPECT_EQ(all.err, "kalo: " + missing + ": No such file or directory\nkalo: " + folder.path() +
                           ": Is a directory\n");
    const std::vector<json_t> records = readRecords(all.out, {});
    ASSERT_EQ(records.size(), 3) << all.out;
    EXPECT_EQ(unescape(records[0]["source"]), first);
    EXPECT_EQ(records[1]["source"], "-");
    EXPECT_EQ(records[2]["source"], second);
    EXPECT_EQ(records[0]["line"], 2);
    EXPECT_EQ(records[2]["line"], 1);
    EXPECT_EQ(records[2]["fields"][0], "2");
    const result_t chosen = runTool({"decode", "--quiet", "--type", "GGA", first});
    EXPECT_EQ(chosen.status, 0) << "the file behind an option's value is a file: " << chosen.err;
}

TEST(decode, closingLine) {
    const std::string input =
        withChecksums("<$GPGGA,1>\r\r<$GPXYZ,1>x\n$GPXYZ,1*00\n \n<$GPXYZ,2>y");
    for (const char* options : {"", " --type GGA", " --only-valid"}) {
        const result_t result = runTool(words("decode"s + options), input);
        for (const char* part : {"6 records", "1 decoded", "2 untyped", "3 malformed", "2 cut",
                                 "1 checksum mismatch", "2 blank lines"}) {
            EXPECT_NE(result.err.find(part), std::string::npos) << options << ": " << result.err;
        }
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    }
    EXPECT_EQ(runTool({"decode", "--quiet"}, input).err, "");
}

TEST(decode, compressedInput) {
    const struct {
        const char* name;
        std::string bytes;
    } rows[] = {
        {"gzip", "\x1F\x8B"},        {"bzip2", "BZh"},
        {"xz", "\xFD\x37zXZ\0"s},    {"zstd", "\x28\xB5\x2F\xFD"},
        {"lz4", "\x04\x22\x4D\x18"}, {"zip", "PK\x03\x04"},
    };
    const folder_t folder;
    const std::string good = folder.file("good", withChecksums("<$GPXYZ,1>\n"));
    for (const auto& row : rows) {
        for (const std::size_t chunk : {std::size_t{0}, std::size_t{1}}) {
            const result_t result = runTool({"decode", "--quiet", "-", good},
                                            row.bytes + withChecksums("9 <$GPXYZ,2>\n"), chunk);
            EXPECT_EQ(result.status, 1) << row.name;
            EXPECT_EQ(result.err.rfind("kalo: -: looks like "s + row.name, 0), 0) << result.err;
            EXPECT_EQ(readRecords(result.out, {}).size(), 1) << result.out;
        }
        // Less than its mark is text.
        runRow({row.name, "--raw", row.bytes.substr(0, row.bytes.size() - 1), "'type':null"});
    }
}

TEST(program, wrongUsage) {
    for (const char* arguments : {"", "code", "decode --wrong", "decode --kind tss",
                                  "decode --type", "decode --type GGA,XXX"}) {
        const result_t result = runTool(words(arguments), "$GPXYZ,1\n");
        EXPECT_EQ(result.status, 2) << arguments;
        EXPECT_EQ(result.out, "") << arguments;
        EXPECT_NE(result.err, "") << arguments;
    }
}

TEST(program, helpsOnATerminal) {
    SKIP_WITHOUT_TERMINALS();
    link_t terminal = makeTerminal();
    tool_t tool({"decode"}, std::move(terminal.theirs));
    const result_t result = tool.wait();
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err.find("kalo decode"), std::string::npos) << result.err;
}

TEST(program, listsEachValue) {
    const std::string list = runTool({"fields"}).out;
    for (const char* name : {"timeOfDay", "latitude", "hdop", "refStationId", "GGA", "VDM"}) {
        EXPECT_NE(list.find(name), std::string::npos) << name << " is not in " << list;
    }
}

const std::string manySentences = [] {
    std::string text;
    for (int i = 0; i < 20000; ++i) {
        text += withChecksums("<$GPXYZ," + std::to_string(i) + ">\r\n");
    }
    return text;
}();

TEST(program, outputThatFails) {
    const folder_t folder;
    const std::string file = folder.file("many", manySentences);
    for (const char* verb : {"decode", "fields"}) {
        const bool decodes = verb == "decode"s;
        const texts_t arguments = decodes ? texts_t{verb, "--quiet", file} : texts_t{verb};
        tool_t full(arguments, makePipe().theirs,
                    descriptor_t(open("/dev/full", O_WRONLY | O_CLOEXEC)));
        const result_t result = full.wait();
        EXPECT_EQ(result.status, 1) << verb;
        EXPECT_EQ(result.err, "kalo: standard output: No space left on device\n");

        tool_t closed(decodes ? texts_t{verb, file} : texts_t{verb}, makePipe().theirs,
                      makePipe().ours);
        const result_t quiet = closed.wait();
        EXPECT_EQ(quiet.status, 0) << verb;
        EXPECT_EQ(quiet.err, "") << verb;
    }
    // A reader that leaves in the middle.
    tool_t left({"decode", file}, makePipe().theirs);
    EXPECT_NE(left.readLine().find(R"("line":1,)"), std::string::npos);
    left.closeOutput();
    const result_t result = left.wait();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
}

bool showsField(const std::string& line, const std::string& value) {
    return !line.empty() && line.back() == '\n' && line.find("\"" + value + "\"") != line.npos;
}

// Each record comes out before the next goes in; then comes `last`.
void feedSlowly(link_t link, const std::string& last, bool closes) {
    tool_t tool({"decode", "--quiet", "-"}, std::move(link.theirs));
    for (const char* value : {"first", "second", "third"}) {
        ASSERT_TRUE(writeAll(link.ours, withChecksums("<$GPXYZ,"s + value + ">\n")));
        const std::string line = tool.readLine();
        EXPECT_TRUE(showsField(line, value)) << line;
    }
    ASSERT_TRUE(writeAll(link.ours, last));
    link.ours = closes ? descriptor_t() : std::move(link.ours);
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
    link_t link = makePipe();
    tool_t tool({"decode", "-"}, std::move(link.theirs));
    ASSERT_TRUE(writeAll(link.ours, "$GPXYZ,a\r"));
    EXPECT_TRUE(showsField(tool.readLine(), "a"));
    ASSERT_TRUE(writeAll(link.ours, "\r"));
    EXPECT_EQ(tool.readLine(std::chrono::milliseconds(50)), "");
    ASSERT_TRUE(writeAll(link.ours, "\n$GPXYZ,b\r"));
    const std::string line = tool.readLine();
    EXPECT_TRUE(showsField(line, "b"));
    EXPECT_NE(line.find(R"("line":2,"offset":11,)"), std::string::npos) << line;
}

TEST(program, stopSignals) {
    for (const int signal : {SIGINT, SIGTERM}) {
        for (const char* last : {"", "$GPXYZ,half"}) {
            link_t link = makePipe();
            tool_t tool({"decode"}, std::move(link.theirs));
            ASSERT_TRUE(writeAll(link.ours, "$GPXYZ,whole\n"s + last));
            EXPECT_TRUE(showsField(tool.readLine(), "whole"));
            tool.send(signal);
            const result_t result = tool.wait();
            EXPECT_EQ(result.status, 128 + signal);
            EXPECT_EQ(result.out, "") << "half a record is none";
            EXPECT_EQ(result.err.rfind("kalo: 1 records", 0), 0) << result.err;
        }
    }
    // In full flight: whole lines, and the count is that of the lines.
    link_t link = makePipe();
    tool_t tool({"decode"}, std::move(link.theirs));
    while (tool.readLine(std::chrono::milliseconds(0)).empty()) {
        ASSERT_TRUE(writeAll(link.ours, "$GPXYZ,1\n"));
    }
    tool.send(SIGTERM);
    const result_t result = tool.wait();
    EXPECT_EQ(result.status, 143);
    const auto lines = 1 + std::count(result.out.begin(), result.out.end(), '\n');
    EXPECT_EQ(result.err.rfind("kalo: " + std::to_string(lines) + " records", 0), 0) << result.err;
}

} // namespace
