#include "kalo/nmea/gsvMsg.h"
#include "kalo/nmea/gsvSet.h"

#include <type_traits>

#include "tests/sentence.h"

namespace {

using kalo::gsvMsg_t;
using kalo::gsvSet_t;

static_assert(!std::is_copy_constructible_v<gsvSet_t> && !std::is_copy_assignable_v<gsvSet_t>);

// Four fields are the head, then come blocks of four, then perhaps the signal.
TEST(gsvMsg, countsBlocksByTheFields) {
    std::string body = "$GPGSV,1,1,0";
    for (unsigned fields = 4; fields < 26; ++fields) {
        const kalo::nmeaFormat_t format = framed(body);
        const gsvMsg_t view(format);
        const bool hasSignal = fields % 4 == 1, isWhole = fields % 4 == 0 || hasSignal;
        unsigned blocks = 77, signal = 77;
        EXPECT_EQ(view.decodeSatCount(blocks), isWhole) << body;
        EXPECT_EQ(blocks, isWhole ? fields / 4 - 1 : 77) << body;
        EXPECT_EQ(view.decodeSignalId(signal), hasSignal) << body;
        EXPECT_EQ(signal, hasSignal ? fields - 1 : 77) << body;
        body += ',' + std::to_string(fields);
    }
}

TEST(gsvMsg, readsBlocksByIndex) {
    const kalo::nmeaFormat_t format = framed("$GPGSV,1,1,2,05,45,090,38,06,-5.5,180,,7");
    const gsvMsg_t view(format);
    unsigned prn = 0;
    double elevation = 0, azimuth = 0, snr = 0;
    EXPECT_TRUE(view.decodeSatPrn(1, prn) && view.decodeSatElevation(1, elevation) &&
                view.decodeSatAzimuth(1, azimuth) && view.decodeSatSnr(0, snr));
    EXPECT_TRUE(prn == 6 && elevation == rad(-5.5) && azimuth == rad(180) && snr == 38);
    // 4 + 4 i would come round to the front of the sentence
    for (const unsigned block :
         {3U, 0x3FFFFFFEU, 0x3FFFFFFFU, 0x40000000U, 0xC0000001U, 0xFFFFFFFFU}) {
        EXPECT_FALSE(view.decodeSatPrn(block, prn) || view.decodeSatElevation(block, elevation) ||
                     view.decodeSatAzimuth(block, azimuth) || view.decodeSatSnr(block, snr))
            << block;
    }
}

/// A sentence that is offered to a set, and the satellites that the set holds then.
struct offer_t {
    const char* sentence;
    enum { notTaken, taken, complete } result;
    std::vector<unsigned> held;
};

void check(const char* what, const std::vector<offer_t>& offers) {
    gsvSet_t set;
    EXPECT_FALSE(set.isComplete());
    for (const offer_t& row : offers) {
        const kalo::nmeaFormat_t format = framed(row.sentence);
        EXPECT_EQ(set.decode(gsvMsg_t(format)), row.result != offer_t::notTaken)
            << what << ": " << row.sentence;
        EXPECT_EQ(set.isComplete(), row.result == offer_t::complete)
            << what << ": " << row.sentence;
        std::vector<unsigned> held;
        for (const auto& satellite : set.sats()) {
            held.push_back(satellite.first);
        }
        EXPECT_EQ(held, row.held) << what << ": " << row.sentence;
    }
}

constexpr auto notTaken = offer_t::notTaken, taken = offer_t::taken, complete = offer_t::complete;

TEST(gsvSet, assemblesGroups) {
    constexpr const char *first = "$GPGSV,3,1,5,9,10,20,30,4,10,20,30,1",
                         *second = "$GPGSV,3,2,5,7,10,20,30,8,10,20,30,1",
                         *third = "$GPGSV,3,3,5,2,10,20,,1";
    check("in order, and the next group", {{first, taken, {4, 9}},
                                           {second, taken, {4, 7, 8, 9}},
                                           {third, complete, {2, 4, 7, 8, 9}},
                                           {"$GPGSV,1,1,1,3,10,20,30", complete, {3}}});
    check("the second is late", {{first, taken, {4, 9}},
                                 {third, notTaken, {4, 9}},
                                 {second, taken, {4, 7, 8, 9}},
                                 {second, notTaken, {4, 7, 8, 9}},
                                 {third, complete, {2, 4, 7, 8, 9}}});
    check("of another group", {{first, taken, {4, 9}},
                               {"$GPGSV,2,2,5,7,10,20,30", notTaken, {4, 9}},
                               {"$GPGSV,3,2,6,7,10,20,30", notTaken, {4, 9}},
                               {"$GPGSV,2,1,2,3,10,20,30", taken, {3}},
                               {second, notTaken, {3}},
                               {"$GPGSV,2,2,2", taken, {3}}});
    check("no start", {{second, notTaken, {}}, {"$GPGSV,0,0,0", notTaken, {}}});
    check("no satellites", {{"$GPGSV,1,1,0", complete, {}}, {"$GPGSV,1,1,0,7", complete, {}}});
    check("no sentences", {{"$GPGSV,0,1,1,3,10,20,30", taken, {3}}});
    check("more than announced", {{"$GPGSV,1,1,1,3,10,20,30", complete, {3}},
                                  {"$GPGSV,1,2,1,3,10,20,30", taken, {3}},
                                  {"$GPGSV,1,1,1,5,1,2,3,6,1,2,3", taken, {5, 6}}});
    check("a head that is no number, half a block", {{first, taken, {4, 9}},
                                                     {"$GPGSV,,1,5,1,10,20,30", notTaken, {4, 9}},
                                                     {"$GPGSV,3,x,5,1,10,20,30", notTaken, {4, 9}},
                                                     {"$GPGSV,3,1,,1,10,20,30", notTaken, {4, 9}},
                                                     {"$GPGSV,3,1,5,1,10,20", notTaken, {4, 9}},
                                                     {"$GPGSV,3,1", notTaken, {4, 9}},
                                                     {second, taken, {4, 7, 8, 9}}});
}

TEST(gsvSet, wantsAnglesWithinTheirBounds) {
    check("bounds", {{"$GPGSV,1,1,2,1,90,360,30,2,0,0,30", complete, {1, 2}},
                     {"$GPGSV,1,1,2,1,90.1,0,30,2,-0.1,0,30", taken, {}},
                     {"$GPGSV,1,1,2,3,0,360.1,30,4,0,-1,30", taken, {}}});
    check("missing", {{"$GPGSV,1,1,4,,10,20,30,2,,20,30,3,10,,30,4,1x,20,30", taken, {}}});
}

TEST(gsvSet, holdsTheLastValuesUntilReset) {
    gsvSet_t set;
    EXPECT_TRUE(set.decode(gsvMsg_t(framed("$GPGSV,2,1,3,5,10,20,30,5,11,21,,6,12,22,33"))));
    const gsvSet_t::sat_t five = set.sats().at(5), six = set.sats().at(6);
    EXPECT_TRUE(five.elevation == rad(11) && five.azimuth == rad(21) && !five.hasSnr);
    EXPECT_TRUE(six.elevation == rad(12) && six.hasSnr && six.snr == 33);
    set.resetState();
    EXPECT_TRUE(set.sats().empty() && !set.isComplete());
    EXPECT_FALSE(set.decode(gsvMsg_t(framed("$GPGSV,2,2,3"))));
}

} // namespace
