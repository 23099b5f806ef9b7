#include "kalo/sensors/atsAsciiMsg.h"

#include <cstdio>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "kalo/time/timeUtil.h"
#include "tests/sentence.h"

namespace {

using kalo::atsAsciiMsg_t;

constexpr double untouched = 77;

// From memory of exactly that size.
atsAsciiMsg_t parsed(const std::string& line) {
    const std::vector<char> bytes(line.begin(), line.end());
    return {bytes.data(), bytes.size()};
}

// The slots that are not empty, as "number=text ".
std::string slotsOf(const atsAsciiMsg_t& message) {
    std::string slots;
    for (unsigned slot = 0; slot < 22; ++slot) {
        std::string text;
        if (message.decodeField(slot, text) || !text.empty()) {
            slots += std::to_string(slot) + "=" + text + " ";
        }
    }
    return slots;
}

TEST(atsAsciiMsg, hasASlotForEachTag) {
    const std::string start = "1 JAN 2026 0:0:0 ";
    const auto message = parsed(start + "CD:13 B:12 SX:4 H:10 AP:11 D:3 CS:7 E:A:7 R:9 SY:5 AR:12 "
                                        "SQ:14 X:1 P:8 SH:6 Y:2");
    EXPECT_EQ(slotsOf(message), "0=1 1=JAN 2=2026 3=0:0:0 4=12 5=1 6=2 7=3 8=8 9=9 10=10 11=A:7 "
                                "12=11 13=12 14=7 15=13 16=4 17=5 18=6 19=14 ");
    double out = untouched;
    EXPECT_FALSE(parsed(start + "P:1x").decodeVesselPitch(out) || out != untouched);
    EXPECT_TRUE(message.decodeVesselPitch(out) && out == rad(8));
    unsigned number = 0;
    EXPECT_TRUE(message.decodeBeaconNumber(number) && number == 12);
    EXPECT_FALSE(parsed(start + "B:A7").decodeBeaconNumber(number));
}

TEST(atsAsciiMsg, splitsALine) {
    const struct {
        const char* line;
        const char* slots;
    } cases[] = {{" \r\n", ""},
                 {"16 NOV 2026", "0=16 1=NOV 2=2026 "},
                 {"16 NOV 2026 B:12", "0=16 1=NOV 2=2026 3=B:12 "},
                 {"  16  NOV   1 2  B:12 ", "0=16 1=NOV 2=1 3=2 4=12 "},
                 {"1 2 3 4 X:1 b:7 Q:9 junk :5 BX:3 APX:1 sx:1", "0=1 1=2 2=3 3=4 5=1 "},
                 {"1 2 3 4 X:1 X:2 Y:1 Y: D:1:2", "0=1 1=2 2=3 3=4 5=2 7=1:2 "},
                 {"1 2 3 4 B:1\tX:2 E::", "0=1 1=2 2=3 3=4 4=1\tX:2 11=: "},
                 {"1 2 3 4\r B:1\r\r\n\n\r", "0=1 1=2 2=3 3=4\r 4=1 "},
                 {"1 2 3 4 B:1\r \r\n", "0=1 1=2 2=3 3=4 4=1\r "},
                 {"1 2 3 4 B:1\r\n*44 Y:2", "0=1 1=2 2=3 3=4 4=1\r\n "}};
    for (const auto& row : cases) {
        EXPECT_EQ(slotsOf(parsed(row.line)), row.slots) << row.line;
    }
    const atsAsciiMsg_t none;
    const auto full = parsed("1 2 3 4");
    for (const unsigned slot : {0U, 4U, 19U, 20U, 4294967295U}) {
        const atsAsciiMsg_t& message = slot == 0 ? none : full;
        std::string text = "before";
        unsigned number = 77;
        double real = untouched;
        EXPECT_FALSE(message.decodeField(slot, text) || message.decodeField(slot, number) ||
                     message.decodeField(slot, real) || message.decodeAsRadians(slot, real));
        EXPECT_TRUE(text == "before" && number == 77 && real == untouched) << slot;
    }
    EXPECT_FALSE(none.checksumError() || atsAsciiMsg_t(nullptr, 0).checksumError());
}

TEST(atsAsciiMsg, checksChecksums) {
    const std::string line = "16 NOV 2026 21:41:01:250 B:12 X:105.2 Y:-33.7 D:250.5 H:271.3";
    for (const std::string& tail : split("|\r\n|*33|*33\r\n|*33 junk|*33*|*33 |*33G")) {
        EXPECT_FALSE(parsed(line + tail).checksumError()) << tail;
    }
    for (const std::string& tail : split("*|*\r\n|*3|*3\r\n|*333|*033|*G3|*3G|* 33|*+33|*-3|**33|"
                                         "*0x33| *33")) {
        const auto message = parsed(line + tail);
        EXPECT_TRUE(message.checksumError()) << tail;
        EXPECT_NE(slotsOf(message).find("10=271.3 "), std::string::npos) << tail;
    }
    EXPECT_FALSE(parsed(" " + line + "*13").checksumError() || parsed("\xE0*e0").checksumError());
    EXPECT_TRUE(parsed("\xE0*E1").checksumError());
    for (unsigned sum = 0; sum < 256; ++sum) {
        char tail[4];
        std::snprintf(tail, sizeof tail, sum % 2 == 0 ? "*%02X" : "*%02x", sum);
        EXPECT_EQ(parsed(line + tail).checksumError(), sum != 0x33) << tail;
    }
    // digits behind the end are not the line's
    EXPECT_TRUE(atsAsciiMsg_t("*00", 2).checksumError());
    EXPECT_FALSE(atsAsciiMsg_t("*000", 3).checksumError());
}

// Dates and times, which are written only when they are good, as one number.
TEST(atsAsciiMsg, decodesDateAndTime) {
    const auto readDate = [](const std::string& line, unsigned& out) {
        kalo::date_t date{0, 0, out};
        const bool good = parsed(line).decodeDate(date);
        out = date.year * 10000 + date.month * 100 + date.day;
        return good;
    };
    checkTexts<unsigned>(
        readDate, 20261116, "16 NOV 2026|16 nOv 2026", 20260200, "0 FEB 2026", 19700931,
        "31 SEP 1970", none,
        "32 NOV 2026|16 NOV 1969|16 NOV 100|16 NOV 20x6|16 NOVEMBER 2026|16 NO 2026|"
        "16 11 2026|x NOV 2026|");
    const auto months = split("JAN|FEB|MAR|APR|MAY|JUN|JUL|AUG|SEP|OCT|NOV|DEC");
    for (unsigned i = 0; i < 12; ++i) {
        const unsigned year = 60 + 3 * i + (i == 3 ? 1 : 0); // on both sides of 70, and 70
        unsigned date = 0;
        EXPECT_TRUE(readDate("1 " + months[i] + ' ' + std::to_string(year), date));
        EXPECT_EQ(date / 10000 + (year < 70 ? 0 : 100), kalo::currentCentury() + year);
        EXPECT_EQ(date % 10000, 100 * i + 101);
    }
    const auto readTime = [](const std::string& text, double& out) {
        kalo::timeOfDay_t time{0, 0, out};
        const bool good = parsed("1 JAN 2026 " + text).decodeTimeOfDay(time);
        out = time.hour * 10000 + time.minute * 100 + time.second;
        return good;
    };
    checkTexts<double>(
        readTime, 214101.25, "21:41:01:250", 235959 + 0.999, "23:59:59:999", 235959, "::23::59:59",
        0, "0:0:0:", 10203 + 0.004, "1:2:3:04:x", none,
        "24:00:00|23:60:00|23:59:60|23:59:59:1000|21:41:01.250|1:2:3:x|x:2:3|1:x:3|12:30|:|");
}

TEST(atsAsciiMsg, copiesAreIndependent) {
    atsAsciiMsg_t original = parsed("1 JAN 2026 0:0:0 B:12*00"), assigned = parsed("1 2 3 4 X:1");
    const std::string slots = slotsOf(original);
    const atsAsciiMsg_t copy(original);
    assigned = original;
    original = *&original; // to itself
    EXPECT_EQ(slotsOf(original), slots);
    original = atsAsciiMsg_t();
    EXPECT_TRUE(slotsOf(original).empty() && !original.checksumError());
    EXPECT_TRUE(slotsOf(copy) == slots && copy.checksumError());
    EXPECT_TRUE(slotsOf(assigned) == slots && assigned.checksumError());
}

} // namespace
