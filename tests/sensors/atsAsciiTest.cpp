#include "kalo/sensors/atsAsciiMsg.h"

#include <map>

#include "kalo/time/timeUtil.h"
#include "tests/nmea/recordValues.h"

namespace {

using kalo::atsAsciiMsg_t;

atsAsciiMsg_t parsed(const std::string& line) { return {guarded(line).data(), line.size()}; }

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
    const atsAsciiMsg_t message = parsed("1 2 3 4 B:A7 P:8");
    double real = 77;
    EXPECT_TRUE(message.decodeAsRadians(8, real) && real == rad(8));
    for (const unsigned slot : {4U, 19U, 20U, 4294967295U}) { // no number, empty, or not there
        const auto decode = [&](auto& out) { return message.decodeField(slot, out); };
        const auto radians = [&](auto& out) { return message.decodeAsRadians(slot, out); };
        EXPECT_EQ(valueOf<std::string>(decode, "before").value_or(""), slot == 4 ? "A7" : "");
        EXPECT_FALSE(valueOf<double>(radians, 77) || valueOf<unsigned>(decode, 0)) << slot;
        EXPECT_FALSE(valueOf<double>(decode, 0)) << slot;
    }
}

TEST(atsAsciiMsg, checksChecksums) {
    const std::string line = "16 NOV 2026 21:41:01:250 B:12 X:105.2 Y:-33.7 D:250.5 H:271.3";
    checkTexts<bool>([&](const std::string& tail) { return !parsed(line + tail).checksumError(); },
                     {{true, {"", "\r\n", "*33", "*33\r\n", "*33 junk", "*33*", "*33 ", "*33G"}},
                      {false,
                       {"*34", "*32", "*23", "*", "*\r\n", "*3", "*3\r\n", "*333", "*033", "*G3",
                        "*3G", "* 33", "*+33", "*-3", "**33", "*0x33", " *33"}}});
    EXPECT_EQ(slotsOf(parsed(line + "*34")), slotsOf(parsed(line)));
    EXPECT_FALSE(parsed(" " + line + "*13").checksumError() || parsed("\xE0*e0").checksumError());
    EXPECT_FALSE(atsAsciiMsg_t().checksumError() || atsAsciiMsg_t(nullptr, 0).checksumError());
    // digits behind the end are not the line's
    EXPECT_TRUE(atsAsciiMsg_t("*00", 2).checksumError());
    EXPECT_FALSE(atsAsciiMsg_t("*000", 3).checksumError());
}

TEST(atsAsciiMsg, decodesDates) {
    const auto read = [](const std::string& line) {
        kalo::date_t date;
        return parsed(line).decodeDate(date) ? textOf(date) : "refused";
    };
    const unsigned century = kalo::currentCentury();
    checkTexts<std::string>(read,
                            {{"2026-11-16", {"16 NOV 2026", "16 nOv 2026"}},
                             {"2026-2-0", {"0 FEB 2026"}},
                             {"1970-9-31", {"31 SEP 1970"}},
                             {textOf(century + 69) + "-1-1", {"1 JAN 69"}},
                             {textOf(century - 30) + "-1-1", {"1 JAN 70"}},
                             {textOf(century - 1) + "-1-1", {"1 JAN 99"}},
                             {"refused",
                              {"32 NOV 2026", "16 NOV 1969", "16 NOV 100", "16 NOV 20x6",
                               "16 NOVEMBER 2026", "16 NO 2026", "16 11 2026", "x NOV 2026", ""}}});
    unsigned month = 0;
    for (const char* name :
         {"JAN", "FEB", "MAR", "APR", "MAY", "JUN", "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"}) {
        EXPECT_EQ(read(std::string("1 ") + name + " 2026"), "2026-" + textOf(++month) + "-1");
    }
}

TEST(atsAsciiMsg, decodesTimes) {
    const auto read = [](const std::string& text) {
        kalo::timeOfDay_t time;
        return parsed("1 JAN 2026 " + text).decodeTimeOfDay(time) ? textOf(time) : "refused";
    };
    checkTexts<std::string>(read,
                            {{"21:41:1.25", {"21:41:01:250"}},
                             {"23:59:59", {"::23::59:59"}},
                             {"23:59:" + textOf(59 + 0.999), {"23:59:59:999"}},
                             {"0:0:0", {"0:0:0:"}},
                             {"1:2:" + textOf(3 + 0.004), {"1:2:3:04:x"}},
                             {"refused",
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
    EXPECT_TRUE(slotsOf(copy) == slots && slotsOf(assigned) == slots && assigned.checksumError());
}

} // namespace
