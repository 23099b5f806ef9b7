#include "kalo/nmea/nmeaFormat.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/sentence.h"

namespace {

using kalo::nmeaFormat_t;

nmeaFormat_t frame(const std::string& text) { return {text.data(), text.size()}; }

std::vector<std::string> fieldsOf(const nmeaFormat_t& format) {
    std::vector<std::string> fields;
    for (unsigned i = 0; i < format.fieldCount(); ++i) {
        fields.push_back(format.field(i)->toString());
    }
    return fields;
}

using texts_t = std::vector<std::string>;

TEST(nmeaFormat, framesAndSplits) {
    const struct {
        std::string text;
        texts_t fields;
    } cases[] = {
        {sentence("$GPGGA,1,2"), {"$GPGGA", "1", "2"}},
        {"$A,1,,2\r\n", {"$A", "1", "", "2"}},
        {"$A,1,\r\n", {"$A", "1", ""}},
        {"$,\r\n", {"$", ""}},
        {"$\r\n", {"$"}},
        {"!\r\n", {"!"}},
        {sentence("$GPGGA,M,,"), {"$GPGGA", "M", "", ""}},
        {"$GPHDT,123.4,T\r\n", {"$GPHDT", "123.4", "T"}},
        // digits of either case, an empty body, and what the rules for numbers let pass
        {"$GPHDT*4f\r\n", {"$GPHDT"}},
        {"$GPHDT*4F\r\n", {"$GPHDT"}},
        {"$*00\r\n", {"$"}},
        {"$AB* 3\r\n", {"$AB"}},
        // one digit, or a star elsewhere, is no checksum
        {"$GPHDT,1*2\r\n", {"$GPHDT", "1*2"}},
        {"$A*1234\r\n", {"$A*1234"}},
        {"$A*12\r\r\n", {"$A*12\r"}},
        // any byte is field content
        {std::string("$A,\0\r\n$B\r\n", 10), {"$A", std::string("\0\r\n$B", 5)}},
    };
    for (const auto& row : cases) {
        const nmeaFormat_t format = frame(row.text);
        EXPECT_TRUE(format.isValid()) << row.text << format.formatError();
        EXPECT_EQ(fieldsOf(format), row.fields) << row.text;
        EXPECT_EQ(format.field(format.fieldCount()), nullptr);
    }
}

TEST(nmeaFormat, saysWhatIsWrong) {
    const struct {
        std::string text;
        int error;
    } cases[] = {
        {"", 0},
        {" $GPHDT\r\n", 0},
        {"GPHDT\r\n", 0},
        {"\r\n", 0},
        {"$", 1},
        {"$GPHDT", 1},
        {"$GPHDT\n", 1},
        {"$GPHDT\r", 1},
        {"$GPHDT\n\r", 1},
        {"$GPHDT*G1\r\n", 1},
        {"$GPHDT*4 \r\n", 1},
        {"$GPHDT*-1\r\n", 1},
        {"$GPHDT*0x\r\n", 1},
        {"$GPHDT*4E\r\n", 2},
        {"$GPHDT\r\n" + sentence("$GPGGA"), 2},
    };
    for (const auto& row : cases) {
        const nmeaFormat_t format = frame(row.text);
        EXPECT_FALSE(format.isValid()) << row.text;
        EXPECT_EQ(format.formatError(), row.error) << row.text;
        EXPECT_EQ(format.type(), kalo::msgTypeUnknown);
        EXPECT_EQ(format.fieldCount(), 0U);
        EXPECT_EQ(format.field(0), nullptr);
    }
}

TEST(nmeaFormat, recognisesTypes) {
    const struct {
        const char* address;
        int type;
    } cases[] = {
        {"$GPALM", 1},
        {"$SDDBT", 2},
        {"$SDDPT", 3},
        {"$GPDTM", 4},
        {"$GPGBS", 5},
        {"$GPGGA", 6},
        {"$GPGLL", 7},
        {"$GPGSA", 8},
        {"$GPGST", 9},
        {"$GPGSV", 10},
        {"$GPHDT", 11},
        {"$WIMWD", 12},
        {"$WIMWV", 13},
        {"$GPRMC", 14},
        {"$TIROT", 15},
        {"$HETHS", 16},
        {"!AIVDM", 17},
        {"$GPVTG", 18},
        {"$GPZDA", 19},
        {"$PZWBGGA", 20},
        {"$PZWBGST", 21},
        {"$PZWBMDE", 22},
        {"$PSIMLBP", 23},
        {"$PSIMSSB", 24},
        {"$PTPSR", 25},
        // only the end of the address counts, and the start character decides which table
        {"$GGA", 6},
        {"$INGGA", 6},
        {"$PXYZGGA", 6},
        {"$PZWBGGAGGA", 6},
        {"!VDM", 17},
        {"!AIVDO", 0},
        {"$GPVDM", 0},
        {"!GPGGA", 0},
        {"$gpgga", 0},
        {"$PTPSRX", 0},
        {"$XPTPSR", 0},
        {"$GPGGAX", 0},
        {"$GPXYZ", 0},
        {"$", 0},
        {"!PTPSR", 0},
        {"$GA", 0},
    };
    for (const auto& row : cases) {
        const nmeaFormat_t format = framed(std::string(row.address) + ",1");
        EXPECT_TRUE(format.isValid()) << row.address;
        EXPECT_EQ(static_cast<int>(format.type()), row.type) << row.address;
    }
}

TEST(nmeaFormat, isFramedAgainAndCopied) {
    nmeaFormat_t format;
    EXPECT_FALSE(format.isValid());
    EXPECT_EQ(format.formatError(), 0);
    const std::string wrong = "$GPGGA,1*00\r\n";
    const std::string longer = sentence("$GPGGA,1,2,3,a text that no short string holds");
    const std::string shorter = sentence("$GPHDT,4");
    EXPECT_FALSE(format.init(wrong.data(), wrong.size()));
    EXPECT_TRUE(format.init(longer.data(), longer.size()));
    EXPECT_EQ(format.formatError(), 2); // success leaves the code
    const nmeaFormat_t copy = format;
    EXPECT_TRUE(format.init(shorter.data(), shorter.size()));
    EXPECT_EQ(fieldsOf(format), (texts_t{"$GPHDT", "4"}));
    EXPECT_EQ(format.type(), kalo::msgTypeHdt);
    EXPECT_EQ(copy.fieldCount(), 5U);
    EXPECT_EQ(copy.type(), kalo::msgTypeGga);
    EXPECT_EQ(copy.formatError(), 2);
    format = copy;
    format = *&format; // to itself
    EXPECT_EQ(fieldsOf(format), fieldsOf(copy));
    EXPECT_FALSE(format.init(nullptr, 0));
    EXPECT_EQ(format.fieldCount(), 0U);
    EXPECT_EQ(format.field(0), nullptr);
    format = nmeaFormat_t();
    EXPECT_EQ(copy.field(4)->toString(), "a text that no short string holds");
}

} // namespace
