#include "kalo/nmea/nmeaFormat.h"

#include "kalo/time/timeUtil.h"
#include "tests/nmea/recordValues.h"

namespace {

using kalo::nmeaField_t;

template <typename T>
void check(bool (nmeaField_t::*decoder)(T&) const, const std::vector<texts_t<T>>& rows) {
    checkTexts<T>(
        [&](const std::string& text) {
            return valueOf<T>([&](T& out) { return (nmeaField_t(text).*decoder)(out); });
        },
        rows);
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
    EXPECT_TRUE(nmeaField_t().isEmpty() && nmeaField_t(nullptr, 0).isEmpty() && !field.isEmpty());
}

TEST(nmeaField, decodesTextAndNumbersOfEveryWidth) {
    const nmeaField_t field("17");
    const auto decoded = [&](auto out, auto... base) {
        return field.decode(out, base...) ? out : decltype(out){};
    };
    EXPECT_TRUE(decoded(short{}, 10) == 17 && decoded(std::uint16_t{}, 16) == 23);
    EXPECT_TRUE(decoded(0, 8) == 15 && decoded(0U, 10) == 17 && decoded(0LL, 16) == 23);
    EXPECT_TRUE(decoded(0ULL, 8) == 15 && decoded(0.0F) == 17 && decoded(0.0) == 17);
    EXPECT_EQ(decoded(std::string()), "17");
    check<char>(&nmeaField_t::decode, {{'N', {"N"}}, {refused, {"", "NS"}}});
}

TEST(nmeaField, decodesCoordinates) {
    check(&nmeaField_t::decodeLatitude,
          {{rad(48 + 7.038 / 60), {"4807.038"}},
           {rad(49), {"4860.0"}},
           {rad(99 + 9.0 / 60), {"999"}},
           {rad(1 + 2.0 / 60), {" 1 2"}},
           {rad(48), {"48-0"}},
           {refused, {"48-1.5", "48", "", "-407.0", "4.07.0", "4807.038 "}}});
    check(&nmeaField_t::decodeLongitude, {{rad(11 + 31.0 / 60), {"01131.000"}},
                                          {rad(113 + 1.0 / 60), {"1131"}},
                                          {refused, {"113", "01131.000E"}}});
    check(&nmeaField_t::decodeNS, {{1, {"N"}}, {-1, {"S"}}, {refused, {"n", "NS", "E", ""}}});
    check(&nmeaField_t::decodeEW, {{1, {"E"}}, {-1, {"W"}}, {refused, {"w", "N"}}});
    check(&nmeaField_t::decodeAsRadians, {{rad(-359.99), {"-359.99"}}, {refused, {"", "1x"}}});
}

TEST(nmeaField, decodesTimes) {
    const auto read = [](const std::string& text) {
        kalo::timeOfDay_t time;
        return nmeaField_t(text).decodeHHMMSS(time) ? textOf(time) : "refused";
    };
    checkTexts<std::string>(read, {{"12:35:19.25", {"123519.25"}},
                                   {"12:35:19", {"123519", "123519."}},
                                   {"12:35:1", {"12351"}},
                                   {"12:35:7", {"1235 7"}},
                                   {"12:35:-7", {"1235-7"}},
                                   {"99:60:99.5", {"996099.5"}},
                                   {"refused", {"", "1235", "1235x9", "12a519", "-12519"}}});
}

TEST(nmeaField, decodesDates) {
    unsigned cutoff = 70;
    const auto read = [&](const std::string& text) {
        kalo::date_t date;
        return nmeaField_t(text).decodeDDMMYY(date, cutoff) ? textOf(date) : "refused";
    };
    const unsigned century = kalo::currentCentury();
    checkTexts<std::string>(read, {{textOf(century - 6) + "-3-23", {"230394"}},
                                   {textOf(century + 26) + "-2-31", {"310226"}},
                                   {textOf(century + 3) + "-2-1", {" 1 2 3"}},
                                   {"refused", {"", "23039", "2303941", "2303-4", "23x394"}}});
    cutoff = 95;
    checkTexts<std::string>(read, {{textOf(century + 94) + "-3-23", {"230394"}}});
}

TEST(nmeaField, decodesAddresses) {
    check(&nmeaField_t::decodeIpv4Address,
          {{0xC0A80114, {"192.168.1.20"}},
           {0xFFFFFFFF, {"255.255.255.255"}},
           {0x0A000001, {"010.000.000.001", " 10 . 0 .\t0 . 1", "+10.0.0.1:2101", "10.0.0.1.5"}},
           {refused,
            {"256.1.1.1", "1.1.1.256", "1.2.3", "1.2.3.", "1,2,3,4", "1.2.3.-4", "-1.2.3.4",
             "1.2. -4294967293.4", "1.2.3.4294967300", "1..2.3", "", "a.b.c.d"}}});
}

using kalo::nmeaFormat_t;

strings_t fieldsOf(const nmeaFormat_t& format) {
    strings_t fields;
    for (unsigned i = 0; i < format.fieldCount(); ++i) {
        fields.push_back(format.field(i)->toString());
    }
    EXPECT_EQ(format.field(format.fieldCount()), nullptr);
    return fields;
}

TEST(nmeaFormat, framesAndSplits) {
    const auto read = [](const std::string& text) {
        return fieldsOf(nmeaFormat_t(guarded(text).data(), text.size()));
    };
    checkTexts<strings_t>(read, {{strings_t{"$A", "1", ""}, {"$A,1,\r\n"}},
                                 {strings_t{"$", ""}, {"$,\r\n"}},
                                 {strings_t{"!"}, {"!\r\n"}},
                                 {strings_t{"$"}, {"$\r\n", "$*00\r\n"}},
                                 {strings_t{"$GPHDT"}, {"$GPHDT*4F\r\n", "$GPHDT*4f\r\n"}},
                                 {strings_t{"$AB"}, {"$AB* 3\r\n"}}, // a number to a stream
                                 // one digit, or a star elsewhere, is no checksum
                                 {strings_t{"$GPHDT", "1*2"}, {"$GPHDT,1*2\r\n"}},
                                 {strings_t{"$A*1234"}, {"$A*1234\r\n"}},
                                 {strings_t{"$A*12\r"}, {"$A*12\r\r\n"}},
                                 // any byte may be in a field
                                 {strings_t{"$A", "\r\n$B"}, {"$A,\r\n$B\r\n"}},
                                 {strings_t{"$A", {"\0", 1}}, {{"$A,\0\r\n", 6}}}});
    // Bytes are read eight at a time, and short texts are copied as fifteen.
    for (std::size_t first = 1; first < 20; ++first) {
        for (std::size_t second = 0; second < 20; ++second) {
            const strings_t fields{'$' + std::string(first, '-'), std::string(second, '+'), "",
                                   "x"};
            EXPECT_EQ(fieldsOf(framed(fields[0] + ',' + fields[1] + ",,x")), fields);
        }
    }
}

TEST(nmeaFormat, saysWhatIsWrong) {
    nmeaFormat_t format = framed("$GPHDT,1"); // what it was before counts for nothing
    const auto read = [&](const std::string& text) {
        EXPECT_FALSE(format.init(guarded(text).data(), text.size())) << text;
        EXPECT_TRUE(!format.isValid() && format.type() == kalo::msgTypeUnknown) << text;
        EXPECT_EQ(format.fieldCount(), 0U) << text;
        return format.formatError();
    };
    checkTexts<int>(read, {{0, {"", " $GPHDT\r\n", "GPHDT\r\n", "\r\n"}},
                           {1,
                            {"$", "$GPHDT", "$GPHDT\n", "$GPHDT\r", "$GPHDT\n\r", "$GPHDT*G1\r\n",
                             "$GPHDT*4 \r\n", "$GPHDT*-1\r\n", "$GPHDT*0x\r\n"}},
                           {2, {"$GPHDT*4E\r\n", "$GPHDT\r\n$GPGGA*56\r\n"}},
                           {0, {"GPHDT\r\n"}}});
}

// Only the end of the address counts, and the start character decides which table.
TEST(nmeaFormat, recognisesTypes) {
    const auto read = [](const std::string& text) { return framed(text + ",1").type(); };
    checkTexts<int>(read, {{kalo::msgTypeGga, {"$GGA", "$INGGA", "$PXYZGGA", "$PZWBGGAGGA"}},
                           {kalo::msgTypeVdm, {"!VDM"}},
                           {kalo::msgTypeUnknown,
                            {"!AIVDO", "$GPVDM", "!GPGGA", "$gpgga", "$PTPSRX", "$XPTPSR",
                             "$GPGGAX", "$GPXYZ", "$", "!PTPSR", "$GA"}}});
}

TEST(nmeaFormat, isFramedAgainAndCopied) {
    const std::string wrong = "$GPGGA,1*00\r\n", good = sentence("$GPGGA,1,2,3,another");
    nmeaFormat_t format;
    EXPECT_TRUE(!format.isValid() && format.formatError() == 0);
    EXPECT_FALSE(format.init(wrong.data(), wrong.size()));
    EXPECT_TRUE(format.init(good.data(), good.size()));
    const nmeaFormat_t copy = format;
    format = framed("$GPHDT,4");
    EXPECT_TRUE(format.type() == kalo::msgTypeHdt && format.fieldCount() == 2);
    format = copy;
    format = *&format; // to itself
    for (const nmeaFormat_t& each : {copy, format}) {
        EXPECT_TRUE(each.isValid() && each.type() == kalo::msgTypeGga);
        EXPECT_EQ(fieldsOf(each), (strings_t{"$GPGGA", "1", "2", "3", "another"}));
        EXPECT_EQ(each.formatError(), 2); // success leaves the code
    }
}

} // namespace
