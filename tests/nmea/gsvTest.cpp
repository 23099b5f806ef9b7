#include "kalo/nmea/gsvMsg.h"
#include "kalo/nmea/gsvSet.h"

#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "tests/sentence.h"

namespace {

using kalo::gsvMsg_t;
using kalo::gsvSet_t;

static_assert(!std::is_copy_constructible_v<gsvSet_t> && !std::is_copy_assignable_v<gsvSet_t>);

constexpr double pi = 3.141592653589793;

TEST(gsvMsg, countsBlocksByTheFields) {
    const struct {
        unsigned fields, blocks;
        bool good, signal;
    } cases[] = {
        {1, 0, false, false}, {2, 77, false, false},  {3, 77, false, false},  {4, 0, true, false},
        {5, 0, true, true},   {6, 77, false, false},  {7, 77, false, false},  {8, 1, true, false},
        {9, 1, true, true},   {10, 77, false, false}, {19, 77, false, false}, {20, 4, true, false},
        {21, 4, true, true},  {24, 5, true, false},
    };
    for (const auto& row : cases) {
        std::string body = "$GPGSV";
        for (unsigned i = 1; i < row.fields; ++i) {
            body += ',' + std::to_string(i);
        }
        const kalo::nmeaFormat_t format = framed(body);
        const gsvMsg_t view(format);
        unsigned blocks = 77, signal = 77;
        EXPECT_EQ(view.decodeSatCount(blocks), row.good) << row.fields;
        EXPECT_EQ(blocks, row.blocks) << row.fields;
        EXPECT_EQ(view.decodeSignalId(signal), row.signal) << row.fields;
        EXPECT_TRUE(!row.signal || signal == row.fields - 1) << row.fields;
    }
}

TEST(gsvMsg, readsBlocksByIndex) {
    const kalo::nmeaFormat_t format = framed("$GPGSV,1,1,2,05,45,090,38,06,-5.5,180,,7");
    const gsvMsg_t view(format);
    const struct {
        unsigned block;
        bool good, hasSnr;
        unsigned prn;
        double elevation, azimuth, snr;
    } cases[] = {
        {0, true, true, 5, pi * 45 / 180, pi * 90 / 180, 38},
        {1, true, false, 6, pi * -5.5 / 180, pi * 180 / 180, 0},
        {3, false, false, 0, 0, 0, 0},
        // 4 + 4 i would come round to the front of the sentence
        {0x3FFFFFFE, false, false, 0, 0, 0, 0},
        {0x3FFFFFFF, false, false, 0, 0, 0, 0},
        {0x40000000, false, false, 0, 0, 0, 0},
        {0xC0000001, false, false, 0, 0, 0, 0},
        {0xFFFFFFFF, false, false, 0, 0, 0, 0},
    };
    for (const auto& row : cases) {
        unsigned prn = 0;
        double elevation = 0, azimuth = 0, snr = 0;
        EXPECT_EQ(view.decodeSatPrn(row.block, prn), row.good) << row.block;
        EXPECT_EQ(view.decodeSatElevation(row.block, elevation), row.good) << row.block;
        EXPECT_EQ(view.decodeSatAzimuth(row.block, azimuth), row.good) << row.block;
        EXPECT_EQ(view.decodeSatSnr(row.block, snr), row.hasSnr) << row.block;
        EXPECT_TRUE(prn == row.prn && elevation == row.elevation && azimuth == row.azimuth &&
                    snr == row.snr)
            << row.block;
    }
}

bool offer(gsvSet_t& set, const std::string& body) {
    const kalo::nmeaFormat_t format = framed("$GPGSV," + body);
    return set.decode(gsvMsg_t(format));
}

std::string prns(const gsvSet_t& set) {
    std::string text;
    for (const auto& entry : set.sats()) {
        text += std::to_string(entry.first) + ' ';
    }
    return text;
}

constexpr const char* first = "3,1,5,9,10,20,30,4,10,20,30,1";
constexpr const char* second = "3,2,5,7,10,20,30,8,10,20,30,1";
constexpr const char* third = "3,3,5,2,10,20,,1";

TEST(gsvSet, assemblesGroups) {
    struct step_t {
        const char* body;
        bool accepted, complete;
        const char* prns; // held afterwards
    };
    const struct {
        const char* name;
        std::vector<step_t> steps;
    } cases[] = {
        {"in order, and the next group",
         {{first, true, false, "4 9 "},
          {second, true, false, "4 7 8 9 "},
          {third, true, true, "2 4 7 8 9 "},
          {"1,1,1,3,10,20,30", true, true, "3 "}}},
        {"sentence 2 lost, then found",
         {{first, true, false, "4 9 "},
          {third, false, false, "4 9 "},
          {second, true, false, "4 7 8 9 "},
          {third, true, true, "2 4 7 8 9 "}}},
        {"sentences repeated",
         {{first, true, false, "4 9 "},
          {second, true, false, "4 7 8 9 "},
          {second, false, false, "4 7 8 9 "},
          {third, true, true, "2 4 7 8 9 "},
          {third, false, true, "2 4 7 8 9 "}}},
        {"sentence 2 of another group",
         {{first, true, false, "4 9 "},
          {"2,2,5,7,10,20,30,", false, false, "4 9 "},
          {"3,2,6,7,10,20,30,", false, false, "4 9 "},
          {second, true, false, "4 7 8 9 "}}},
        {"a group without its start", {{second, false, false, ""}, {third, false, false, ""}}},
        {"number 0", {{"0,0,0", false, false, ""}, {"1,0,0", false, false, ""}}},
        {"dropped for a new one",
         {{first, true, false, "4 9 "},
          {"2,1,2,31,10,20,30,", true, false, "31 "},
          {second, false, false, "31 "},
          {"2,2,2,32,10,20,30,", true, true, "31 32 "}}},
        {"no satellites at all", {{"1,1,0", true, true, ""}, {"1,1,0,7", true, true, ""}}},
        {"group of 0 sentences", {{"0,1,1,3,10,20,30", true, false, "3 "}}},
        {"one more than announced",
         {{"1,1,1,3,10,20,30", true, true, "3 "}, {"1,2,1,3,10,20,30", true, false, "3 "}}},
        {"angles at and beyond their bounds",
         {{"1,1,2,1,90,360,30,2,0,0,30", true, true, "1 2 "},
          {"1,1,4,1,90.1,0,30,2,-0.1,0,30,3,0,360.1,30,4,0,-1,30", true, false, ""},
          {"1,1,2,1,-10,40,,2,10,40,", true, false, "2 "}}}, // below the horizon
        {"blocks that are not readable",
         {{"1,1,4,,10,20,30,2,,20,30,3,10,,30,4,1x,20,30", true, false, ""}}},
        {"satellite repeated", {{"1,1,2,5,10,20,30,5,11,20,30", true, false, "5 "}}},
        {"more satellites than announced", {{"1,1,1,5,10,20,30,6,11,20,30", true, false, "5 6 "}}},
        {"heads that are not readable",
         {{first, true, false, "4 9 "},
          {",1,5,1,10,20,30", false, false, "4 9 "},
          {"3,x,5,1,10,20,30", false, false, "4 9 "},
          {"3,1,,1,10,20,30", false, false, "4 9 "},
          {"3,1,5,1,10,20", false, false, "4 9 "}, // half a block
          {"3,1", false, false, "4 9 "},
          {second, true, false, "4 7 8 9 "}}},
    };
    for (const auto& row : cases) {
        gsvSet_t set;
        EXPECT_FALSE(set.isComplete());
        for (const step_t& step : row.steps) {
            EXPECT_EQ(offer(set, step.body), step.accepted) << row.name << ": " << step.body;
            EXPECT_EQ(set.isComplete(), step.complete) << row.name << ": " << step.body;
            EXPECT_EQ(prns(set), step.prns) << row.name << ": " << step.body;
        }
    }
}

TEST(gsvSet, holdsTheLastValuesOfASatellite) {
    gsvSet_t set;
    ASSERT_TRUE(offer(set, "1,1,3,5,10,20,30,5,11,21,,6,12,22,33"));
    const gsvSet_t::sat_t five = set.sats().at(5), six = set.sats().at(6);
    EXPECT_TRUE(five.elevation == pi * 11 / 180 && five.azimuth == pi * 21 / 180 && !five.hasSnr);
    EXPECT_TRUE(six.elevation == pi * 12 / 180 && six.hasSnr && six.snr == 33);
    const gsvSet_t::sat_t none{};
    EXPECT_TRUE(none.azimuth == 0 && none.elevation == 0 && !none.hasSnr && none.snr == 0);
}

TEST(gsvSet, forgetsOnReset) {
    gsvSet_t set;
    ASSERT_TRUE(offer(set, first));
    set.resetState();
    EXPECT_EQ(prns(set), "");
    EXPECT_FALSE(offer(set, second));
    ASSERT_TRUE(offer(set, "1,1,0"));
    set.resetState();
    EXPECT_FALSE(set.isComplete());
}

} // namespace
