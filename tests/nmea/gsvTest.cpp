#include "kalo/nmea/gsvMsg.h"
#include "kalo/nmea/gsvSet.h"

#include <type_traits>

#include <gtest/gtest.h>

#include "tests/sentence.h"

namespace {

using kalo::gsvMsg_t;
using kalo::gsvSet_t;

static_assert(!std::is_copy_constructible_v<gsvSet_t> && !std::is_copy_assignable_v<gsvSet_t>);

// The blocks and the signal of sentences with 1, 2, ... fields; - for false, ! if it wrote.
TEST(gsvMsg, countsBlocksByTheFields) {
    std::string body = "$GPGSV", counts, signals;
    for (unsigned fields = 1; fields < 26; ++fields) {
        const kalo::nmeaFormat_t format = framed(body);
        const gsvMsg_t view(format);
        unsigned blocks = 77, signal = 77;
        counts += view.decodeSatCount(blocks) ? std::to_string(blocks) : blocks == 77 ? "-" : "!";
        signals += view.decodeSignalId(signal) ? std::to_string(signal) + ' ' : "";
        body += ',' + std::to_string(fields);
    }
    EXPECT_EQ(counts, "!--00--11--22--33--44--55");
    EXPECT_EQ(signals, "4 8 12 16 20 24 ");
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

/// Offers sentences, 1 to 3 standing for those of a group. For each: a for accepted, r for refused,
/// in capitals when the set is complete then, and the numbers of the satellites held.
std::string offered(gsvSet_t& set, const std::string& bodies) {
    const std::string group[] = {"3,1,5,9,10,20,30,4,10,20,30,1", "3,2,5,7,10,20,30,8,10,20,30,1",
                                 "3,3,5,2,10,20,,1"};
    std::string results;
    for (const std::string& body : split(bodies)) {
        const kalo::nmeaFormat_t format =
            framed("$GPGSV," + (body.size() == 1 ? group[body[0] - '1'] : body));
        const bool accepted = set.decode(gsvMsg_t(format));
        results += (accepted ? "aA" : "rR")[set.isComplete() ? 1 : 0];
        for (const auto& entry : set.sats()) {
            results += std::to_string(entry.first) + ' ';
        }
    }
    return results;
}

TEST(gsvSet, assemblesGroups) {
    const struct {
        const char* name;
        const char* bodies;
        const char* results;
    } cases[] = {
        {"in order, and the next group", "1|2|3|1,1,1,3,10,20,30", "a4 9 a4 7 8 9 A2 4 7 8 9 A3 "},
        {"2 lost, then found", "1|3|2|3", "a4 9 r4 9 a4 7 8 9 A2 4 7 8 9 "},
        {"repeated", "1|2|2|3|3", "a4 9 a4 7 8 9 r4 7 8 9 A2 4 7 8 9 R2 4 7 8 9 "},
        {"2 of another group", "1|2,2,5,7,10,20,30,|3,2,6,7,10,20,30,|2",
         "a4 9 r4 9 r4 9 a4 7 8 9 "},
        {"without start, number 0", "2|3|0,0,0|1,0,0", "rrrr"},
        {"dropped for a new one", "1|2,1,2,31,10,20,30,|2|2,2,2,32,10,20,30,",
         "a4 9 a31 r31 A31 32 "},
        {"no satellites", "1,1,0|1,1,0,7", "AA"},
        {"group of 0 sentences", "0,1,1,3,10,20,30", "a3 "},
        {"one more than announced", "1,1,1,3,10,20,30|1,2,1,3,10,20,30", "A3 a3 "},
        {"angles at and beyond their bounds",
         "1,1,2,1,90,360,30,2,0,0,30|1,1,4,1,90.1,0,30,2,-0.1,0,30,3,0,360.1,30,4,0,-1,30|"
         "1,1,2,1,-10,40,,2,10,40,",
         "A1 2 aa2 "},
        {"not readable", "1,1,4,,10,20,30,2,,20,30,3,10,,30,4,1x,20,30", "a"},
        {"repeated satellite, too many", "1,1,2,5,10,20,30,5,11,20,30|1,1,1,5,1,2,3,6,1,2,3",
         "a5 a5 6 "},
        {"heads not readable, half a block",
         "1|,1,5,1,10,20,30|3,x,5,1,10,20,30|3,1,,1,10,20,30|3,1,5,1,10,20|3,1|2",
         "a4 9 r4 9 r4 9 r4 9 r4 9 r4 9 a4 7 8 9 "},
    };
    for (const auto& row : cases) {
        gsvSet_t set;
        EXPECT_FALSE(set.isComplete());
        EXPECT_EQ(offered(set, row.bodies), row.results) << row.name;
    }
}

TEST(gsvSet, holdsTheLastValuesUntilReset) {
    gsvSet_t set;
    offered(set, "1,1,3,5,10,20,30,5,11,21,,6,12,22,33");
    const gsvSet_t::sat_t five = set.sats().at(5), six = set.sats().at(6);
    EXPECT_TRUE(five.elevation == rad(11) && five.azimuth == rad(21) && !five.hasSnr);
    EXPECT_TRUE(six.elevation == rad(12) && six.hasSnr && six.snr == 33);
    const gsvSet_t::sat_t none{};
    EXPECT_TRUE(none.azimuth == 0 && none.elevation == 0 && !none.hasSnr && none.snr == 0);
    offered(set, "1");
    set.resetState();
    EXPECT_EQ(offered(set, "2|1,1,0"), "rA");
    set.resetState();
    EXPECT_FALSE(set.isComplete());
}

} // namespace
