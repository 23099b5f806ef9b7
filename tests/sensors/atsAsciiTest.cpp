#include "kalo/sensors/atsAsciiMsg.h"

#include <cstdio>
#include <map>

#include "kalo/time/timeUtil.h"
#include "tests/sentence.h"

namespace {

using kalo::atsAsciiMsg_t;

// From memory of exactly that size.
atsAsciiMsg_t parsed(const std::string& line) {
    const std::vector<char> bytes(line.begin(), line.end());
    return {bytes.data(), bytes.size()};
}

/// The texts of the slots that are not empty.
using slots_t = std::map<unsigned, std::string>;

slots_t slotsOf(const atsAsciiMsg_t& message) {
    slots_t slots;
    std::string text;
    for (unsigned slot = 0; slot < 22; ++slot) {
        if (message.decodeField(slot, text)) {
            slots[slot] = text;
        }
    }
    return slots;
}

TEST(atsAsciiMsg, splitsALine) {
    const auto with = [&](slots_t tagged) {
        tagged.insert({{0, "1"}, {1, "2"}, {2, "3"}, {3, "4"}});
        return tagged;
    };
    checkTexts<slots_t>(
        [](const std::string& line) { return slotsOf(parsed(line)); },
        {{slots_t{}, {"", " \r\n"}},
         {slots_t{{0, "16"}, {1, "NOV"}, {2, "2026"}}, {"16 NOV 2026"}},
         {slots_t{{0, "16"}, {1, "NOV"}, {2, "2026"}, {3, "B:12"}}, {"16 NOV 2026 B:12"}},
         {with({{4, "12"}}), {"1 2 3 4 B:12", "  1  2   3 4  B:12 \r\n", "1 2 3 4 B:12\r\r\n\n\r"}},
         {with({{5, "1"}}), {"1 2 3 4 X:1 b:7 Q:9 junk :5 BX:3 APX:1 sx:1"}}, // unknown tags
         {with({{5, "2"}, {7, "1:2"}}), {"1 2 3 4 X:1 X:2 Y:1 Y: D:1:2"}},
         {with({{4, "1\tX:2"}, {11, ":"}}), {"1 2 3 4 B:1\tX:2 E::"}}, // only blanks separate
         {with({{4, "1\r"}}), {"1 2 3 4 B:1\r \r\n"}},
         {with({{4, "1\r\n"}}), {"1 2 3 4 B:1\r\n*44 Y:2"}}});
    const atsAsciiMsg_t message = parsed("1 2 3 4 B:A7 P:1x");
    for (const unsigned slot : {4U, 8U, 19U, 20U, 4294967295U}) { // no number, empty, or not there
        std::string text = "before";
        unsigned number = 0;
        double real = 77;
        EXPECT_EQ(message.decodeField(slot, text), slot < 19) << slot;
        EXPECT_TRUE(slot < 19 || text == "before") << slot;
        EXPECT_FALSE(message.decodeField(slot, number) || message.decodeAsRadians(slot, real));
        EXPECT_EQ(real, 77) << slot;
        EXPECT_FALSE(message.decodeField(slot, real)) << slot;
    }
}

TEST(atsAsciiMsg, checksChecksums) {
    const std::string line = "16 NOV 2026 21:41:01:250 B:12 X:105.2 Y:-33.7 D:250.5 H:271.3";
    checkTexts<bool>([&](const std::string& tail) { return !parsed(line + tail).checksumError(); },
                     {{true, {"", "\r\n", "*33", "*33\r\n", "*33 junk", "*33*", "*33 ", "*33G"}},
                      {false,
                       {"*", "*\r\n", "*3", "*3\r\n", "*333", "*033", "*G3", "*3G", "* 33", "*+33",
                        "*-3", "**33", "*0x33", " *33"}}});
    for (int sum = 0; sum < 256; ++sum) {
        char tail[4];
        std::snprintf(tail, sizeof tail, sum % 2 == 0 ? "*%02X" : "*%02x", sum);
        EXPECT_EQ(parsed(line + tail).checksumError(), sum != 0x33) << tail;
        EXPECT_EQ(slotsOf(parsed(line + tail)), slotsOf(parsed(line)));
    }
    EXPECT_FALSE(parsed(" " + line + "*13").checksumError() || parsed("\xE0*e0").checksumError());
    EXPECT_FALSE(atsAsciiMsg_t().checksumError() || atsAsciiMsg_t(nullptr, 0).checksumError());
    // digits behind the end are not the line's
    EXPECT_TRUE(atsAsciiMsg_t("*00", 2).checksumError());
    EXPECT_FALSE(atsAsciiMsg_t("*000", 3).checksumError());
}

TEST(atsAsciiMsg, decodesDates) {
    const auto read = [](const std::string& line) {
        return dateOf([&](auto& out) { return parsed(line).decodeDate(out); });
    };
    const unsigned century = kalo::currentCentury();
    checkTexts<unsigned>(read,
                         {{ymd(2026, 11, 16), {"16 NOV 2026", "16 nOv 2026"}},
                          {ymd(2026, 2, 0), {"0 FEB 2026"}},
                          {ymd(1970, 9, 31), {"31 SEP 1970"}},
                          {ymd(century + 69, 1, 1), {"1 JAN 69"}},
                          {ymd(century - 30, 1, 1), {"1 JAN 70"}},
                          {ymd(century - 1, 1, 1), {"1 JAN 99"}},
                          {refused,
                           {"32 NOV 2026", "16 NOV 1969", "16 NOV 100", "16 NOV 20x6",
                            "16 NOVEMBER 2026", "16 NO 2026", "16 11 2026", "x NOV 2026", ""}}});
    unsigned month = 0;
    for (const char* name :
         {"JAN", "FEB", "MAR", "APR", "MAY", "JUN", "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"}) {
        EXPECT_EQ(read(std::string("1 ") + name + " 2026"), ymd(2026, ++month, 1)) << name;
    }
}

TEST(atsAsciiMsg, decodesTimes) {
    const auto read = [](const std::string& text) {
        return timeOf([&](auto& out) { return parsed("1 JAN 2026 " + text).decodeTimeOfDay(out); });
    };
    checkTexts<double>(read, {{hms(21, 41, 1.25), {"21:41:01:250"}},
                              {hms(23, 59, 59 + 0.999), {"23:59:59:999"}},
                              {hms(23, 59, 59), {"::23::59:59"}},
                              {hms(0, 0, 0), {"0:0:0:"}},
                              {hms(1, 2, 3 + 0.004), {"1:2:3:04:x"}},
                              {refused,
                               {"24:00:00", "23:60:00", "23:59:60", "23:59:59:1000", "21:41:01.250",
                                "1:2:3:x", "x:2:3", "1:x:3", "12:30", ":", ""}}});
}

TEST(atsAsciiMsg, copiesAreIndependent) {
    atsAsciiMsg_t original = parsed("1 JAN 2026 0:0:0 B:12*00"), assigned = parsed("1 2 3 4 X:1");
    const slots_t slots = slotsOf(original);
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
