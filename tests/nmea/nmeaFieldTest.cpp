#include "kalo/nmea/nmeaField.h"

#include <gtest/gtest.h>

#include "kalo/time/dateTime.h"
#include "kalo/time/timeUtil.h"

namespace {

using kalo::nmeaField_t;

constexpr double pi = 3.141592653589793;
constexpr double untouched = 77;

struct realCase_t {
    const char* text;
    bool good;
    double value;
};

template <std::size_t count>
void check(bool (nmeaField_t::*decoder)(double&) const, const realCase_t (&cases)[count]) {
    for (const auto& row : cases) {
        double out = untouched;
        EXPECT_EQ((nmeaField_t(row.text).*decoder)(out), row.good) << '"' << row.text << '"';
        EXPECT_EQ(out, row.good ? row.value : untouched) << '"' << row.text << '"';
    }
}

TEST(nmeaField, holdsItsBytes) {
    const char bytes[] = {'$', 'G', '\0', 'A'};
    nmeaField_t field(bytes, sizeof bytes);
    EXPECT_EQ(field.toString(), std::string(bytes, sizeof bytes));
    EXPECT_EQ(field.size(), sizeof bytes);
    EXPECT_NE(field.data(), bytes);
    const nmeaField_t copy = field;
    field.init(bytes, 1);
    EXPECT_TRUE(field == "$" && field != "" && field != "$G");
    EXPECT_EQ(copy.size(), sizeof bytes);
    field = std::string("GP");
    EXPECT_EQ(field.toString(), "GP");
    EXPECT_TRUE(nmeaField_t().isEmpty() && nmeaField_t(nullptr, 0).isEmpty());
}

TEST(nmeaField, comparesItsEnds) {
    const nmeaField_t address(std::string("$GPGGA"));
    EXPECT_TRUE(address.startsWith("") && address.startsWith("$GP") &&
                address.startsWith("$GPGGA"));
    EXPECT_TRUE(address.endsWith("") && address.endsWith("GGA") && address.endsWith("$GPGGA"));
    EXPECT_FALSE(address.startsWith("$gp") || address.startsWith("GP"));
    EXPECT_FALSE(address.startsWith("$GPGGA1") || nmeaField_t(std::string("$G")).startsWith("$GP"));
    EXPECT_FALSE(address.endsWith("gga") || nmeaField_t(std::string("GA")).endsWith("GGA"));
}

TEST(nmeaField, decodesTextAndCharacters) {
    std::string text = "before";
    EXPECT_TRUE(nmeaField_t().decode(text));
    EXPECT_EQ(text, "");
    char letter = '?';
    EXPECT_FALSE(nmeaField_t().decode(letter) || nmeaField_t(std::string("NS")).decode(letter));
    EXPECT_EQ(letter, '?');
    EXPECT_TRUE(nmeaField_t(std::string("N")).decode(letter));
    EXPECT_EQ(letter, 'N');
}

TEST(nmeaField, decodesNumbersOfEveryWidth) {
    const nmeaField_t field(std::string("17"));
    short s = 0;
    unsigned short us = 0;
    int i = 0;
    unsigned u = 0;
    long long ll = 0;
    unsigned long long ull = 0;
    float f = 0;
    double d = 0;
    EXPECT_TRUE(field.decode(s, 10) && field.decode(us, 16) && field.decode(i, 8));
    EXPECT_TRUE(field.decode(u, 10) && field.decode(ll, 16) && field.decode(ull, 8));
    EXPECT_TRUE(field.decode(f) && field.decode(d));
    EXPECT_TRUE(s == 17 && us == 23 && i == 15 && u == 17 && ll == 23 && ull == 15);
    EXPECT_TRUE(f == 17 && d == 17);
}

TEST(nmeaField, decodesCoordinates) {
    check(&nmeaField_t::decodeLatitude, {{"4807.038", true, (48 + 7.038 / 60) * pi / 180},
                                         {"4807", true, (48 + 7.0 / 60) * pi / 180},
                                         {"4860.0", true, 49 * pi / 180},
                                         {"999", true, (99 + 9.0 / 60) * pi / 180},
                                         {" 1 2", true, (1 + 2.0 / 60) * pi / 180},
                                         {"48-0", true, 48 * pi / 180},
                                         {"48-1.5", false, 0},
                                         {"48", false, 0},
                                         {"", false, 0},
                                         {"-407.0", false, 0},
                                         {"4.07.0", false, 0},
                                         {"4807.038 ", false, 0}});
    check(&nmeaField_t::decodeLongitude, {{"01131.000", true, (11 + 31.0 / 60) * pi / 180},
                                          {"99900", true, 999 * pi / 180},
                                          {"1131", true, (113 + 1.0 / 60) * pi / 180},
                                          {"113", false, 0},
                                          {"01131.000E", false, 0}});
    check(&nmeaField_t::decodeNS, {{"N", true, 1},
                                   {"S", true, -1},
                                   {"n", false, 0},
                                   {"NS", false, 0},
                                   {"E", false, 0},
                                   {"", false, 0}});
    check(&nmeaField_t::decodeEW,
          {{"E", true, 1}, {"W", true, -1}, {"w", false, 0}, {"N", false, 0}, {"", false, 0}});
    check(&nmeaField_t::decodeAsRadians, {{"180", true, pi},
                                          {"-90", true, -pi * 90 / 180},
                                          {"359.99", true, pi * 359.99 / 180},
                                          {"", false, 0},
                                          {"1x", false, 0}});
}

TEST(nmeaField, decodesTimes) {
    const struct {
        const char* text;
        bool good;
        kalo::timeOfDay_t time;
    } cases[] = {
        {"123519", true, {12, 35, 19}},
        {"123519.25", true, {12, 35, 19.25}},
        {"123519.", true, {12, 35, 19}},
        {"12351", true, {12, 35, 1}},
        {"996099.5", true, {99, 60, 99.5}},
        {"1235 7", true, {12, 35, 7}},
        {"1235-7", true, {12, 35, -7}},
        // what stands before the fault has been stored
        {"1235x9", false, {12, 35, 0}},
        {"12a519", false, {12, 0, 77}},
        {"1235", false, {77, 77, 77}},
        {"-12519", false, {77, 77, 77}},
        {"", false, {77, 77, 77}},
    };
    for (const auto& row : cases) {
        kalo::timeOfDay_t out{77, 77, 77};
        EXPECT_EQ(nmeaField_t(row.text).decodeHHMMSS(out), row.good) << row.text;
        EXPECT_EQ(out.hour, row.time.hour) << row.text;
        if (row.good || row.time.hour == 77) {
            EXPECT_EQ(out.minute, row.time.minute) << row.text;
            EXPECT_EQ(out.second, row.time.second) << row.text;
        }
    }
}

TEST(nmeaField, decodesDates) {
    const unsigned century = kalo::currentCentury();
    const struct {
        const char* text;
        unsigned cutoff;
        bool good;
        kalo::date_t date;
    } cases[] = {
        {"230394", 70, true, {century - 6, 3, 23}}, {"230394", 95, true, {century + 94, 3, 23}},
        {"010126", 70, true, {century + 26, 1, 1}}, {"310299", 70, true, {century - 1, 2, 31}},
        {" 1 2 3", 70, true, {century + 3, 2, 1}},  {"23039", 70, false, {77, 77, 77}},
        {"2303941", 70, false, {77, 77, 77}},       {"", 70, false, {77, 77, 77}},
        {"2303-4", 70, false, {77, 3, 23}},
    };
    for (const auto& row : cases) {
        kalo::date_t out{77, 77, 77};
        EXPECT_EQ(nmeaField_t(row.text).decodeDDMMYY(out, row.cutoff), row.good) << row.text;
        EXPECT_EQ(out.year, row.date.year) << row.text;
        EXPECT_EQ(out.month, row.date.month) << row.text;
        EXPECT_EQ(out.day, row.date.day) << row.text;
    }
}

TEST(nmeaField, decodesAddresses) {
    const struct {
        const char* text;
        bool good;
        unsigned address;
    } cases[] = {
        {"192.168.1.20", true, 0xC0A80114},
        {"255.255.255.255", true, 0xFFFFFFFF},
        {"010.000.000.001", true, 0x0A000001},
        {" 10 . 0 .\t0 . 1", true, 0x0A000001},
        {"10.0.0.1:2101", true, 0x0A000001},
        {"1.2.3.4.5", true, 0x01020304},
        {"+1.2.3.4", true, 0x01020304},
        {"256.1.1.1", false, 0},
        {"1.2.3", false, 0},
        {"1.2.3.", false, 0},
        {"1,2,3,4", false, 0},
        {"1.2.3.-4", false, 0},
        {"-1.2.3.4", false, 0},
        {"1.2. -4294967293.4", false, 0},
        {"1.2.3.4294967300", false, 0},
        {"1..2.3", false, 0},
        {"", false, 0},
        {"a.b.c.d", false, 0},
    };
    for (const auto& row : cases) {
        unsigned out = 77;
        EXPECT_EQ(nmeaField_t(row.text).decodeIpv4Address(out), row.good) << row.text;
        EXPECT_EQ(out, row.good ? row.address : 77) << row.text;
    }
}

} // namespace
