#include "kalo/nmea/nmeaMsg.h"

#include <memory>

#include <gtest/gtest.h>

#include "kalo/kalo.h"
#include "tests/sentence.h"

namespace {

using kalo::nmeaMsg_t;

TEST(nmeaMsg, factoryWantsAValidSentence) {
    EXPECT_EQ(nmeaMsg_t::create(kalo::nmeaFormat_t("$GPGGA*00\r\n", 11)), nullptr);
    EXPECT_EQ(nmeaMsg_t::create(kalo::nmeaFormat_t()), nullptr);
    const kalo::nmeaFormat_t format = framed("$GPGGA");
    const std::unique_ptr<nmeaMsg_t> view(nmeaMsg_t::create(format));
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(&view->format(), &format);
    EXPECT_EQ(view->addressField()->toString(), "$GPGGA");
}

TEST(nmeaMsg, givesAccessToAnySentence) {
    const kalo::nmeaFormat_t format = framed("$GPXYZ,M,,M,4");
    const nmeaMsg_t view(format.type(), format);
    const nmeaMsg_t copy = view;
    kalo::date_t date{1, 2, 3};
    kalo::timeOfDay_t time{4, 5, 6};
    EXPECT_FALSE(view.decodeDate(date) || view.decodeTimeOfDay(time));
    EXPECT_TRUE(date.day == 3 && time.hour == 4 && view.capabilities() == 0);
    EXPECT_EQ(copy.field(4), format.field(4));
    EXPECT_EQ(view.field(5), nullptr);

    EXPECT_EQ(view.findField("M", 0), 1);
    EXPECT_EQ(view.findField("M", 2), 3);
    EXPECT_EQ(view.findField("", 0), 2);
    EXPECT_EQ(view.findField("m", 0), -1);
    EXPECT_EQ(view.findField("4", 5), -1);
    EXPECT_EQ(view.findField("4", 4000000000U), -1);

    using texts_t = std::vector<std::string>;
    EXPECT_EQ(view.getFields(3, 100), (texts_t{"M", "4"}));
    EXPECT_EQ(view.getFields(3, 4294967295U), (texts_t{"M", "4"}));
    EXPECT_EQ(view.getFields(1, 2), (texts_t{"M", ""}));
    EXPECT_EQ(view.getFields(0), (texts_t{"$GPXYZ", "M", "", "M", "4"}));
    EXPECT_EQ(view.getFields(0, 0), texts_t());
    EXPECT_EQ(view.getFields(5), texts_t());
    EXPECT_EQ(view.getFields(4294967295U, 2), texts_t());
}

constexpr double pi = 3.141592653589793;

template <typename Gga>
void checkGga(const char* address) {
    const kalo::nmeaFormat_t format = framed(
        std::string(address) + ",123519,4807.038,S,01131.000,W,1,08,0.9,545.4,M,46.9,M,2.5,0120");
    const Gga view(format);
    kalo::timeOfDay_t time;
    double latitude = 0, longitude = 0, hdop = 0, height = 0, separation = 0, age = 0;
    unsigned quality = 0, satellites = 0, station = 0;
    EXPECT_TRUE(view.decodeTimeOfDay(time) && view.decodeLatitude(latitude) &&
                view.decodeLongitude(longitude) && view.decodeQuality(quality) &&
                view.decodeSatCount(satellites) && view.decodeHdop(hdop) &&
                view.decodeGeoidalHeight(height) && view.decodeGeoidalSeparation(separation) &&
                view.decodeDiffAge(age) && view.decodeRefStationId(station));
    EXPECT_TRUE(time.hour == 12 && time.minute == 35 && time.second == 19);
    EXPECT_EQ(latitude, -(48 + 7.038 / 60) * pi / 180);
    EXPECT_EQ(longitude, -(11 + 31.0 / 60) * pi / 180);
    EXPECT_TRUE(quality == 1 && satellites == 8 && hdop == 0.9 && height == 545.4);
    EXPECT_TRUE(separation == 46.9 && age == 2.5 && station == 120);
}

TEST(ggaMsg, decodesEveryFieldOfBothSentences) {
    checkGga<kalo::ggaMsg_t>("$GPGGA");
    checkGga<kalo::pzwbGgaMsg_t>("$PZWBGGA");
    // A view reads by its own positions, whatever the sentence is.
    checkGga<kalo::ggaMsg_t>("$GPXYZ");
}

TEST(ggaMsg, refusesWhatIsMissingOrMalformed) {
    const struct {
        const char* body;
        bool latitude, longitude, separation;
    } cases[] = {
        {"$GPGGA,,4807.038,N,01131.000,E,,,,,,46.9", true, true, true},
        {"$GPGGA,,4807.038,N,01131.000,E,,,,,", true, true, false}, // short
        {"$GPGGA,,4807.038,n,01131.000,e,,,,,,", false, false, false},
        {"$GPGGA,,4807.038,E,01131.000,N,,,,,,x", false, false, false},
        {"$GPGGA,,,N,,E", false, false, false},
        {"$GPGGA,,4807.038,,01131.000", false, false, false},
        {"$GPGGA", false, false, false},
    };
    for (const auto& row : cases) {
        const kalo::nmeaFormat_t format = framed(row.body);
        const kalo::ggaMsg_t view(format);
        double latitude = 77, longitude = 77, separation = 77;
        EXPECT_EQ(view.decodeLatitude(latitude), row.latitude) << row.body;
        EXPECT_EQ(view.decodeLongitude(longitude), row.longitude) << row.body;
        EXPECT_EQ(view.decodeGeoidalSeparation(separation), row.separation) << row.body;
        EXPECT_EQ(latitude == 77, !row.latitude) << row.body; // written on success alone
        EXPECT_EQ(longitude == 77, !row.longitude) << row.body;
    }
}

} // namespace
