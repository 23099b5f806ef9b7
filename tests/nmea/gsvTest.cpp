#include "kalo/nmea/gsvMsg.h"
#include "kalo/nmea/gsvSet.h"

#include <type_traits>

#include "tests/sentence.h"

namespace {

using kalo::gsvMsg_t;
using kalo::gsvSet_t;

static_assert(!std::is_copy_constructible_v<gsvSet_t> && !std::is_copy_assignable_v<gsvSet_t>);

TEST(gsvMsg, countsBlocksByTheFields) {
    const auto blocks = [](const std::string& body) {
        return valueOf<unsigned>(
            [&](unsigned& out) { return gsvMsg_t(framed(body)).decodeSatCount(out); }, 77);
    };
    checkTexts<unsigned>(
        blocks, {{0, {"$GPGSV,1,1,0", "$GPGSV,1,1,0,7"}},
                 {1, {"$GPGSV,1,1,1,2,3,4,5", "$GPGSV,1,1,1,2,3,4,5,7"}},
                 {2, {"$GPGSV,1,1,2,2,3,4,5,6,7,8,9"}},
                 {refused, {"$GPGSV,1", "$GPGSV,1,1", "$GPGSV,1,1,1,2,3", "$GPGSV,1,1,1,2,3,4"}}});
}

TEST(gsvMsg, hasNoBlocksBehindTheLast) {
    const kalo::nmeaFormat_t format = framed("$GPGSV,1,1,2,05,45,090,38,06,-5.5,180,,7");
    const gsvMsg_t view(format);
    unsigned prn = 0;
    double real = 0;
    EXPECT_TRUE(view.decodeSatElevation(1, real) && real == rad(-5.5));
    // 4 + 4 i would come round to the front of the sentence
    for (const unsigned block : {3U, 0x3FFFFFFEU, 0x3FFFFFFFU, 0x40000000U, 0xFFFFFFFFU}) {
        EXPECT_FALSE(view.decodeSatPrn(block, prn) || view.decodeSatElevation(block, real) ||
                     view.decodeSatAzimuth(block, real) || view.decodeSatSnr(block, real))
            << block;
    }
}

enum result_t { notTaken, taken, complete };

/// A sentence that is offered to a set, and the satellites that the set holds then.
struct offer_t {
    const char* sentence;
    result_t result;
    std::vector<unsigned> held;
};

void check(const std::vector<offer_t>& offers) {
    gsvSet_t set;
    EXPECT_FALSE(set.isComplete());
    for (const offer_t& row : offers) {
        const bool isTaken = set.decode(gsvMsg_t(framed(row.sentence)));
        std::vector<unsigned> held;
        for (const auto& satellite : set.sats()) {
            held.push_back(satellite.first);
        }
        EXPECT_EQ(isTaken, row.result != notTaken) << row.sentence;
        EXPECT_EQ(set.isComplete(), row.result == complete) << row.sentence;
        EXPECT_EQ(held, row.held) << row.sentence;
    }
}

TEST(gsvSet, assemblesGroups) {
    const char* const first = "$GPGSV,3,1,5,9,10,20,30,4,10,20,30,1";
    const char* const second = "$GPGSV,3,2,5,7,10,20,30,8,10,20,30,1";
    const char* const third = "$GPGSV,3,3,5,2,10,20,,1";
    check({{second, notTaken, {}},
           {first, taken, {4, 9}},
           {third, notTaken, {4, 9}},
           {second, taken, {4, 7, 8, 9}},
           {second, notTaken, {4, 7, 8, 9}},
           {third, complete, {2, 4, 7, 8, 9}},
           {"$GPGSV,1,1,1,3,10,20,30", complete, {3}}});
    // of another group, and a new group while one is open
    check({{first, taken, {4, 9}},
           {"$GPGSV,2,2,5,7,10,20,30", notTaken, {4, 9}},
           {"$GPGSV,3,2,6,7,10,20,30", notTaken, {4, 9}},
           {"$GPGSV,2,1,2,3,10,20,30", taken, {3}},
           {second, notTaken, {3}},
           {"$GPGSV,2,2,2", taken, {3}}});
    // no sentences, no satellites, more of both than announced
    check({{"$GPGSV,0,0,0", notTaken, {}},
           {"$GPGSV,0,1,1,3,10,20,30", taken, {3}},
           {"$GPGSV,1,1,0", complete, {}},
           {"$GPGSV,1,1,0,7", complete, {}},
           {"$GPGSV,1,1,1,3,10,20,30", complete, {3}},
           {"$GPGSV,1,2,1,3,10,20,30", taken, {3}},
           {"$GPGSV,1,1,1,5,1,2,3,6,1,2,3", taken, {5, 6}}});
    // a head that is no number, half a block
    check({{first, taken, {4, 9}},
           {"$GPGSV,,1,5,1,10,20,30", notTaken, {4, 9}},
           {"$GPGSV,3,x,5,1,10,20,30", notTaken, {4, 9}},
           {"$GPGSV,3,1,,1,10,20,30", notTaken, {4, 9}},
           {"$GPGSV,3,1,5,1,10,20", notTaken, {4, 9}},
           {"$GPGSV,3,1", notTaken, {4, 9}}});
    // angles at their bounds, beyond them, missing
    check({{"$GPGSV,1,1,2,1,90,360,30,2,0,0,30", complete, {1, 2}},
           {"$GPGSV,1,1,2,1,90.1,0,30,2,-0.1,0,30", taken, {}},
           {"$GPGSV,1,1,2,3,0,360.1,30,4,0,-1,30", taken, {}},
           {"$GPGSV,1,1,4,,10,20,30,2,,20,30,3,10,,30,4,1x,20,30", taken, {}}});
}

TEST(gsvSet, holdsTheLastValuesUntilReset) {
    gsvSet_t set;
    EXPECT_TRUE(set.decode(gsvMsg_t(framed("$GPGSV,2,1,3,5,10,20,30,5,11,21,,6,12,22,33"))));
    const gsvSet_t::sat_t five = set.sats().at(5), six = set.sats().at(6);
    EXPECT_TRUE(five.elevation == rad(11) && five.azimuth == rad(21) && !five.hasSnr);
    EXPECT_TRUE(six.elevation == rad(12) && six.hasSnr && six.snr == 33);
    set.resetState();
    EXPECT_TRUE(set.sats().empty() && !set.decode(gsvMsg_t(framed("$GPGSV,2,2,3"))));
}

} // namespace
