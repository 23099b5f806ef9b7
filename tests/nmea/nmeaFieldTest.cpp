#include "kalo/nmea/nmeaFormat.h"

#include <gtest/gtest.h>

#include "kalo/time/timeUtil.h"
#include "tests/sentence.h"

namespace {

using kalo::nmeaField_t;

template <typename T, typename... Cases>
void check(bool (nmeaField_t::*decoder)(T&) const, Cases... cases) {
    checkTexts<T>(
        [&](const std::string& text, T& out) { return (nmeaField_t(text).*decoder)(out); },
        cases...);
}

TEST(nmeaField, holdsItsBytes) {
    const char bytes[] = {'$', 'G', '\0', 'A'};
    nmeaField_t field(bytes, sizeof bytes);
    EXPECT_EQ(field.toString(), std::string(bytes, sizeof bytes));
    const nmeaField_t copy = field;
    field.init(bytes, 1);
    EXPECT_TRUE(field == "$" && field != "" && field != "$G" && copy.size() == sizeof bytes);
    field = std::string("$GP");
    EXPECT_TRUE(field.startsWith("") && field.startsWith("$G") && field.startsWith("$GP"));
    EXPECT_TRUE(field.endsWith("") && field.endsWith("GP") && field.endsWith("$GP"));
    EXPECT_FALSE(field.startsWith("$g") || field.startsWith("GP") || field.startsWith("$GPG"));
    EXPECT_FALSE(field.endsWith("gp") || field.endsWith("$G") || field.endsWith("G$GP"));
    EXPECT_TRUE(nmeaField_t().isEmpty() && nmeaField_t(nullptr, 0).isEmpty());
}

TEST(nmeaField, decodesTextAndNumbersOfEveryWidth) {
    check<std::string>(&nmeaField_t::decode, "", "", "N ", "N ");
    check<char>(&nmeaField_t::decode, 'N', "N", none, "|NS");
    const nmeaField_t field("17");
    const auto number = [&](auto out, auto... base) {
        return field.decode(out, base...) ? out : decltype(out){};
    };
    EXPECT_TRUE(number(short{}, 10) == 17 && number(std::uint16_t{}, 16) == 23);
    EXPECT_TRUE(number(0, 8) == 15 && number(0U, 10) == 17 && number(0LL, 16) == 23);
    EXPECT_TRUE(number(0ULL, 8) == 15 && number(0.0F) == 17 && number(0.0) == 17);
}

TEST(nmeaField, decodesCoordinates) {
    check<double>(&nmeaField_t::decodeLatitude, rad(48 + 7.038 / 60), "4807.038", rad(49), "4860.0",
                  rad(99 + 9.0 / 60), "999", rad(1 + 2.0 / 60), " 1 2", rad(48), "48-0", none,
                  "48-1.5|48||-407.0|4.07.0|4807.038 ");
    check<double>(&nmeaField_t::decodeLongitude, rad(11 + 31.0 / 60), "01131.000",
                  rad(113 + 1.0 / 60), "1131", none, "113|01131.000E");
    check<double>(&nmeaField_t::decodeNS, 1, "N", -1, "S", none, "n|NS|E|");
    check<double>(&nmeaField_t::decodeEW, 1, "E", -1, "W", none, "w|N|");
    check<double>(&nmeaField_t::decodeAsRadians, rad(-359.99), "-359.99", none, "|1x");
}

// Whether it is one, and what is in the output then; what stands before a fault is stored.
TEST(nmeaField, decodesTimes) {
    const auto read = [](const std::string& text, std::string& out) {
        kalo::timeOfDay_t time{77, 77, 77};
        std::ostringstream stream;
        stream << nmeaField_t(text).decodeHHMMSS(time);
        stream << ' ' << time.hour << ' ' << time.minute << ' ' << time.second;
        out = stream.str();
        return true;
    };
    checkTexts<std::string>(read, "1 12 35 19.25", "123519.25", "1 12 35 19", "123519.|123519",
                            "1 12 35 1", "12351", "1 99 60 99.5", "996099.5", "1 12 35 7", "1235 7",
                            "1 12 35 -7", "1235-7", "0 12 35 0", "1235x9", "0 12 0 77", "12a519",
                            "0 77 77 77", "1235|-12519|");
}

TEST(nmeaField, decodesDates) {
    unsigned cutoff = 70;
    const auto read = [&](const std::string& text, std::string& out) {
        kalo::date_t date{77, 77, 77};
        const bool good = nmeaField_t(text).decodeDDMMYY(date, cutoff);
        out = shown(good, date);
        return true;
    };
    checkTexts<std::string>(read, "good 23 3 c-6", "230394", "good 31 2 c26", "310226",
                            "good 1 2 c3", " 1 2 3", "bad 77 77 77", "23039|2303941|",
                            "bad 23 3 77", "2303-4");
    cutoff = 95;
    checkTexts<std::string>(read, "good 23 3 c94", "230394");
}

TEST(nmeaField, decodesAddresses) {
    check<unsigned>(&nmeaField_t::decodeIpv4Address, 0xC0A80114, "192.168.1.20", 0xFFFFFFFF,
                    "255.255.255.255", 0x0A000001,
                    "010.000.000.001| 10 . 0 .\t0 . 1|+10.0.0.1:2101|10.0.0.1.5", none,
                    "256.1.1.1|1.1.1.256|1.2.3|1.2.3.|1,2,3,4|1.2.3.-4|-1.2.3.4|"
                    "1.2. -4294967293.4|1.2.3.4294967300|1..2.3||a.b.c.d");
}

using kalo::nmeaFormat_t;

nmeaFormat_t frame(const std::string& text) { return {text.data(), text.size()}; }

std::string fieldsOf(const nmeaFormat_t& format) {
    std::string fields;
    for (unsigned i = 0; i < format.fieldCount(); ++i) {
        fields += (i == 0 ? "" : "|") + format.field(i)->toString();
    }
    EXPECT_EQ(format.field(format.fieldCount()), nullptr);
    return fields;
}

TEST(nmeaFormat, framesAndSplits) {
    const auto read = [](const std::string& text, std::string& out) {
        const nmeaFormat_t format = frame(text);
        out = fieldsOf(format);
        return format.isValid();
    };
    const std::string one = sentence("$GPGGA,1,,a text of more than fifteen,M,,");
    checkTexts<std::string>(read, "$GPGGA|1||a text of more than fifteen|M||", one.c_str());
    checkTexts<std::string>(read, "$A|1|", "$A,1,\r\n", "$|", "$,\r\n", "!", "!\r\n");
    // digits of either case, an empty body, and what the rules for numbers let pass
    checkTexts<std::string>(read, "$GPHDT", "$GPHDT*4f\r\n|$GPHDT*4F\r\n", "$", "$*00\r\n|$\r\n",
                            "$AB", "$AB* 3\r\n");
    // one digit, or a star elsewhere, is no checksum; any byte is field content
    checkTexts<std::string>(read, "$GPHDT|1*2", "$GPHDT,1*2\r\n", "$A*1234", "$A*1234\r\n",
                            "$A*12\r", "$A*12\r\r\n", "$A|\r\n$B", "$A,\r\n$B\r\n");
    EXPECT_EQ(fieldsOf(frame(std::string("$A,\0\r\n", 6))), std::string("$A|\0", 4));
}

TEST(nmeaFormat, saysWhatIsWrong) {
    const auto read = [](const std::string& text, int& out) {
        const nmeaFormat_t format = frame(text);
        out = format.formatError();
        EXPECT_TRUE(format.type() == kalo::msgTypeUnknown && format.fieldCount() == 0) << text;
        return !format.isValid();
    };
    checkTexts<int>(read, 0, "| $GPHDT\r\n|GPHDT\r\n|\r\n", 1,
                    "$|$GPHDT|$GPHDT\n|$GPHDT\r|$GPHDT\n\r|"
                    "$GPHDT*G1\r\n|$GPHDT*4 \r\n|$GPHDT*-1\r\n|$GPHDT*0x\r\n",
                    2, "$GPHDT*4E\r\n|$GPHDT\r\n$GPGGA*56\r\n");
}

// Only the end of the address counts, and the start character decides which table.
TEST(nmeaFormat, recognisesTypes) {
    const auto read = [](const std::string& text, int& out) {
        out = framed(text + ",1").type();
        return true;
    };
    checkTexts<int>(read, kalo::msgTypeGga, "$GGA|$INGGA|$PXYZGGA|$PZWBGGAGGA", kalo::msgTypeVdm,
                    "!VDM", kalo::msgTypeUnknown,
                    "!AIVDO|$GPVDM|!GPGGA|$gpgga|$PTPSRX|$XPTPSR|"
                    "$GPGGAX|$GPXYZ|$|!PTPSR|$GA");
}

TEST(nmeaFormat, isFramedAgainAndCopied) {
    nmeaFormat_t format;
    EXPECT_TRUE(!format.isValid() && format.formatError() == 0);
    const std::string wrong = "$GPGGA,1*00\r\n", shorter = sentence("$GPHDT,4");
    const std::string longer = sentence("$GPGGA,1,2,3,a text that no short string holds");
    EXPECT_FALSE(format.init(wrong.data(), wrong.size()));
    EXPECT_TRUE(format.init(longer.data(), longer.size()));
    const nmeaFormat_t copy = format;
    EXPECT_TRUE(format.init(shorter.data(), shorter.size()));
    EXPECT_EQ(fieldsOf(format), "$GPHDT|4");
    EXPECT_EQ(format.type(), kalo::msgTypeHdt);
    EXPECT_TRUE(copy.fieldCount() == 5 && copy.type() == kalo::msgTypeGga && copy.isValid());
    EXPECT_EQ(copy.formatError(), 2); // success leaves the code
    format = copy;
    format = *&format; // to itself
    EXPECT_EQ(fieldsOf(format), fieldsOf(copy));
    EXPECT_FALSE(format.init(nullptr, 0));
    EXPECT_EQ(fieldsOf(format), "");
    format = nmeaFormat_t();
    EXPECT_EQ(fieldsOf(copy), "$GPGGA|1|2|3|a text that no short string holds");
}

} // namespace
