#include "kalo/sensors/atsAsciiMsg.h"

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "kalo/time/timeUtil.h"

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

TEST(atsAsciiMsg, hasASlotAndADecoderForEachTag) {
    const struct {
        const char* tag;
        unsigned slot;
        bool isAngle;
        bool (atsAsciiMsg_t::*decoder)(double&) const;
    } cases[] = {{"X", 5, false, &atsAsciiMsg_t::decodeBeaconX},
                 {"Y", 6, false, &atsAsciiMsg_t::decodeBeaconY},
                 {"D", 7, false, &atsAsciiMsg_t::decodeBeaconDepth},
                 {"P", 8, true, &atsAsciiMsg_t::decodeVesselPitch},
                 {"R", 9, true, &atsAsciiMsg_t::decodeVesselRoll},
                 {"H", 10, true, &atsAsciiMsg_t::decodeVesselHeading},
                 {"AP", 12, true, &atsAsciiMsg_t::decodeAnglePitchTelemetry},
                 {"AR", 13, true, &atsAsciiMsg_t::decodeAngleRollTelemetry},
                 {"CS", 14, false, &atsAsciiMsg_t::decodeCurrentFlowSpeed},
                 {"CD", 15, true, &atsAsciiMsg_t::decodeCurrentFlowDirection},
                 {"SX", 16, false, &atsAsciiMsg_t::decodeVesselPositionX},
                 {"SY", 17, false, &atsAsciiMsg_t::decodeVesselPositionY},
                 {"SH", 18, false, &atsAsciiMsg_t::decodeVesselPositionHdop}};
    const std::string start = "16 NOV 2026 21:41:01 ";
    for (const auto& row : cases) {
        const auto message = parsed(start + row.tag + ":-271.3");
        const std::string slot = " " + std::to_string(row.slot) + "=-271.3 ";
        EXPECT_NE(slotsOf(message).find(slot), std::string::npos) << row.tag;
        for (const auto& other : cases) {
            double out = untouched;
            EXPECT_EQ((message.*other.decoder)(out), row.slot == other.slot) << row.tag;
            const double value = row.isAngle ? -271.3 * 3.141592653589793 / 180 : -271.3;
            EXPECT_EQ(out, row.slot == other.slot ? value : untouched) << row.tag << other.tag;
        }
        double out = untouched;
        EXPECT_FALSE((parsed(start + row.tag + ":1x").*row.decoder)(out)) << row.tag;
        EXPECT_TRUE(!row.isAngle || out == untouched) << row.tag;
    }
    const auto message = parsed(start + "B:12 E:A:7 SQ:3");
    std::string text;
    unsigned number = 0;
    EXPECT_TRUE(message.decodeBeaconId(text) && text == "12");
    EXPECT_TRUE(message.decodeErrorCode(text) && text == "A:7");
    EXPECT_TRUE(message.decodeBeaconNumber(number) && number == 12);
    EXPECT_TRUE(message.decodeVesselPositionQuality(number) && number == 3);
    EXPECT_EQ(slotsOf(message), "0=16 1=NOV 2=2026 3=21:41:01 4=12 11=A:7 19=3 ");
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
    for (const char* tail : {"", "\r\n", "*33", "*33\r\n", "*33 junk", "*33*", "*33 ", "*33G"}) {
        EXPECT_FALSE(parsed(line + tail).checksumError()) << tail;
    }
    for (const char* tail : {"*", "*\r\n", "*3", "*3\r\n", "*333", "*033", "*G3", "*3G", "* 33",
                             "*+33", "*-3", "**33", "*0x33", " *33"}) {
        const auto message = parsed(line + tail);
        EXPECT_TRUE(message.checksumError()) << tail;
        EXPECT_NE(slotsOf(message).find("10=271.3 "), std::string::npos) << tail;
    }
    EXPECT_FALSE(parsed(" " + line + "*13").checksumError() || parsed("\xE0*e0").checksumError());
    EXPECT_TRUE(parsed("*").checksumError() || parsed("\xE0*E1").checksumError());
    for (unsigned sum = 0; sum < 256; ++sum) {
        for (const char* format : {"*%02X", "*%02x"}) {
            char tail[4];
            std::snprintf(tail, sizeof tail, format, sum);
            EXPECT_EQ(parsed(line + tail).checksumError(), sum != 0x33) << tail;
        }
    }
    // digits behind the end are not the line's
    EXPECT_TRUE(atsAsciiMsg_t("*00", 2).checksumError());
    EXPECT_FALSE(atsAsciiMsg_t("*000", 3).checksumError());
}

// The date or time of a line; refused, it must leave what stood there.
std::string dateOf(const std::string& line) {
    kalo::date_t out{7, 7, 7};
    const bool good = parsed(line).decodeDate(out);
    std::ostringstream text;
    text << (good ? "" : "refused ") << out.year << ' ' << out.month << ' ' << out.day;
    return text.str();
}

std::string timeOf(const std::string& time) {
    kalo::timeOfDay_t out{7, 7, 7};
    const bool good = parsed("1 JAN 2026 " + time).decodeTimeOfDay(out);
    std::ostringstream text;
    text << (good ? "" : "refused ") << out.hour << ' ' << out.minute << ' ' << out.second;
    return text.str();
}

TEST(atsAsciiMsg, decodesDatesAndTimes) {
    unsigned month = 0;
    for (const char* name :
         {"JAN", "feb", "Mar", "APR", "MAY", "JUN", "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"}) {
        const std::string expected = "1970 " + std::to_string(++month) + " 31";
        EXPECT_EQ(dateOf(std::string("31 ") + name + " 1970"), expected);
    }
    for (const unsigned year : {0U, 69U, 70U, 99U}) {
        const unsigned full = kalo::currentCentury() + year - (year < 70 ? 0 : 100);
        EXPECT_EQ(dateOf("0 JAN " + std::to_string(year)), std::to_string(full) + " 1 0");
    }
    for (const char* line : {"32 NOV 2026", "16 NOV 1969", "16 NOV 100", "16 NOV 20x6",
                             "16 NOVEMBER 2026", "16 NO 2026", "16 11 2026", "x NOV 2026", ""}) {
        EXPECT_EQ(dateOf(line), "refused 7 7 7") << line;
    }
    EXPECT_EQ(timeOf("21:41:01:250"), "21 41 1.25");
    EXPECT_EQ(timeOf("23:59:59:999"), "23 59 59.999");
    EXPECT_EQ(timeOf("::23::59:59"), "23 59 59");
    EXPECT_EQ(timeOf("0:0:0:"), "0 0 0");
    EXPECT_EQ(timeOf("1:2:3:04:x"), "1 2 3.004");
    for (const char* time : {"24:00:00", "23:60:00", "23:59:60", "23:59:59:1000", "21:41:01.250",
                             "1:2:3:x", "x:2:3", "1:x:3", "12:30", ":", ""}) {
        EXPECT_EQ(timeOf(time), "refused 7 7 7") << time;
    }
}

TEST(atsAsciiMsg, copiesAreIndependent) {
    atsAsciiMsg_t original = parsed("1 JAN 2026 0:0:0 B:12*00");
    const std::string slots = slotsOf(original);
    const atsAsciiMsg_t copy(original);
    atsAsciiMsg_t assigned = parsed("1 JAN 2026 0:0:0 X:1");
    assigned = original;
    const atsAsciiMsg_t& self = original;
    original = self;
    EXPECT_EQ(slotsOf(original), slots);
    original = atsAsciiMsg_t();
    EXPECT_TRUE(slotsOf(original).empty() && !original.checksumError());
    EXPECT_TRUE(slotsOf(copy) == slots && copy.checksumError());
    EXPECT_TRUE(slotsOf(assigned) == slots && assigned.checksumError());
}

} // namespace
