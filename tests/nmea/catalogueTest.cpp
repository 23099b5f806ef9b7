// The views: what is common to them, and the rules in which they differ. What every plain accessor
// reads is held by the expected output of the shipped recording.
#include <memory>

#include <gtest/gtest.h>

#include "kalo/kalo.h"
#include "tests/sentence.h"
#include "tools/record/registry.h"

namespace {

using namespace kalo;

/// What an accessor gives for sentences: the fields behind the address.
template <typename View, typename T, typename... Cases>
void check(bool (View::*accessor)(T&) const, Cases... cases) {
    const auto read = [&](const std::string& fields, T& out) {
        const nmeaFormat_t format = framed("$GPXYZ," + fields);
        return (View(format).*accessor)(out);
    };
    checkTexts<T>(read, cases...);
}

/// Counts values.
struct countingSink_t {
    int values = 0;

    template <typename Column, typename T>
    void value(Column /*column*/, const T& /*value*/) {
        ++values;
    }
    template <typename Column>
    void none(Column /*column*/) {}
};

// The addresses by type, then what the view has: its capabilities, and where it finds the time of
// day and the date. Field i of each sentence reads "0i3519" or "i3519", so that as a time of day
// its hour is the index of the field, and as a date ddmmyy its day is.
TEST(catalogue, hasAViewForEveryType) {
    const auto types =
        split("$GPXYZ|$GPALM|$SDDBT 0 - -|$SDDPT 0 - -|$GPDTM 0 - -|$GPGBS 2 1 -|$GPGGA 2 1 -|"
              "$GPGLL 2 5 -|$GPGSA 0 - -|$GPGST 2 1 -|$GPGSV 0 - -|$GPHDT 0 - -|$WIMWD 0 - -|"
              "$WIMWV 0 - -|$GPRMC 3 1 9|$TIROT 0 - -|$HETHS 0 - -|!AIVDM|$GPVTG 0 - -|"
              "$GPZDA 3 1 23519|$PZWBGGA 2 1 -|$PZWBGST 2 1 -|$PZWBMDE 2 1 -|$PSIMLBP 2 1 -|"
              "$PSIMSSB 2 1 -|$PTPSR 0 2 -");
    EXPECT_EQ(types.size(), sentenceCount + 1);
    for (std::size_t type = 0; type < types.size(); ++type) {
        std::string found = types[type].substr(0, types[type].find(' ')), body = found;
        const nmeaFormat_t shortFormat = framed(found);
        for (unsigned i = 1; i < 20; ++i) {
            body += (i < 10 ? ",0" : ",") + std::to_string(i) + "3519";
        }
        const nmeaFormat_t format = framed(body);
        EXPECT_EQ(static_cast<std::size_t>(format.type()), type);
        const std::unique_ptr<const nmeaMsg_t> view(nmeaMsg_t::create(format));
        if (view == nullptr) {
            EXPECT_EQ(found, types[type]);
            continue;
        }
        EXPECT_EQ(view->type(), format.type()) << types[type];
        timeOfDay_t time;
        date_t date;
        found += ' ' + std::to_string(view->capabilities());
        found += ' ' + (view->decodeTimeOfDay(time) ? std::to_string(time.hour) : "-");
        found += ' ' + (view->decodeDate(date) ? std::to_string(date.day) : "-");
        EXPECT_EQ(found, types[type]);

        // The address alone has a view too, which has no value.
        record_t record;
        record.type = typeOfSentence(format.type());
        record.content = &shortFormat;
        scratch_t scratch;
        countingSink_t sink;
        EXPECT_TRUE(visitRecord(record, scratch, [&](auto kind, const auto& source) {
            EXPECT_FALSE(readValues<decltype(kind)>(source, sink)) << types[type];
        }));
        EXPECT_EQ(sink.values, 0) << types[type];
    }
}

TEST(catalogue, givesAccessToAnySentence) {
    EXPECT_EQ(nmeaMsg_t::create(nmeaFormat_t()), nullptr);
    EXPECT_EQ(nmeaMsg_t::create(nmeaFormat_t("$GPGGA*00\r\n", 11)), nullptr);
    const nmeaFormat_t format = framed("$GPXYZ,M,,M,4");
    const nmeaMsg_t original(format.type(), format), view = original;
    EXPECT_TRUE(&view.format() == &format && view.field(4) == format.field(4));
    EXPECT_TRUE(*view.addressField() == "$GPXYZ" && view.field(5) == nullptr);
    EXPECT_TRUE(view.findField("M", 0) == 1 && view.findField("M", 2) == 3);
    EXPECT_TRUE(view.findField("", 0) == 2 && view.findField("m", 0) == -1);
    EXPECT_TRUE(view.findField("4", 5) == -1 && view.findField("4", 4000000000U) == -1);
    using texts_t = std::vector<std::string>;
    EXPECT_EQ(view.getFields(3, 4294967295U), (texts_t{"M", "4"}));
    EXPECT_EQ(view.getFields(1, 2), (texts_t{"M", ""}));
    EXPECT_EQ(view.getFields(0), (texts_t{"$GPXYZ", "M", "", "M", "4"}));
    EXPECT_TRUE(view.getFields(0, 0).empty() && view.getFields(5).empty());
    EXPECT_TRUE(view.getFields(4294967295U, 2).empty());
}

TEST(catalogue, choosesTheUnit) {
    check(&dbtMsg_t::decodeDepth, 36.1 * 1200 / 3937, "036.1,f,011.0,M,006.0,F|036.1,f", 11.0,
          ",f,011.0,M,006.0,F|36x,f,011.0,M|036.1,F,011.0,M|"
          "036.1,ff,011.0,M|036.1,,011.0,M",
          6.0 * 1200 / 3937 * 6, "036.1,,011.0,m,006.0,F|,,,M,6,F|,,,,6,F", unset,
          "036.1|1,F,011.0|,,,,6|,,,,6,f|,,,,6,FF|,,,,,F");
    check(&mwdMsg_t::decodeWindSpeed, 10.0 * 0.514444, ",,,,10.0,N,5.1,M|,,,,10.0,N", 5.1,
          ",,,,,,5.1,M|,,,,,N,5.1,M|,,,,1,n,5.1,M|,,,,1,NN,5.1,M", unset,
          ",,,,1,,5,m|,,,,1,,5,N|,,,,1,,5|,,,,1|,,,,1,M,,M");
    check(&vtgMsg_t::decodeSpeedOverGround, 5.5 * 0.514444,
          "054.7,T,034.4,M,005.5,N,010.2,K,A|,,,,5.5,N", 10.2 / 3.6,
          ",,,,,,010.2,K|,,,,,N,010.2,K|,,,,5,n,010.2,K|,,,,5,,010.2,K", unset,
          ",,,,5,n,1,k|,,,,5,K,,|,,,,5,,1|,,,,5|,,,,5,M,1,N");
    check(&mwvMsg_t::decodeWindSpeed, 20.0, "270.0,R,20.0,M,A|,,20.0,M", 20.0 * 0.514444,
          ",,20.0,N", 20.0 * 0.44704, ",,20.0,S", 20.0 / 3.6, ",,20.0,K", unset,
          ",,2,m|,,2,n|,,2,s|,,2,k|,,2,KM|,,2,|,,2|,,,K");
    check(&rmcMsg_t::decodeSpeedOverGround, 22.4 * 0.514444, ",,,,,,022.4", none, ",,,,,,|,,,,,,x");
    // nothing is written before the field of the unit is there
    check(&dbtMsg_t::decodeDepth, none, "1|,,1|,,,,1");
    check(&mwvMsg_t::decodeWindSpeed, none, ",,1");
    check(&mwdMsg_t::decodeWindSpeed, none, ",,,,1|,,,,,,1");
    check(&vtgMsg_t::decodeSpeedOverGround, none, ",,,,1|,,,,,,1");
}

TEST(catalogue, keepsSigns) {
    check(&gllMsg_t::decodeLatitude, rad(48 + 7.038 / 60), "4807.038,N", -rad(48 + 7.038 / 60),
          "4807.038,S", none, "|,N|4807.038|4807.038,|4807.038,n|4807.038,E");
    check(&rotMsg_t::decodeRateOfTurn, rad(-3.0 / 60), "-3.0,A", rad(7.2 / 60), "7.2,V", none,
          ",A");
    check(&rmcMsg_t::decodeMagneticVariation, -rad(3.1), ",,,,,,,,,003.1,W", rad(3.1),
          ",,,,,,,,,003.1,E", none, ",,,,,,,,,003.1,w|,,,,,,,,,003.1|,,,,,,,,,,W");
    check(&dtmMsg_t::decodeLatitudeOffset, -rad(0.5 / 60), ",,0.5,S|,,-0.5,N", rad(0.5 / 60),
          ",,0.5,N|,,-0.5,S", none, ",,0.5,E|,,0.5|,,,N");
    check(&dtmMsg_t::decodeLongitudeOffset, rad(1.2 / 60), "999,A,0.5,S,1.2,E", -rad(1.2 / 60),
          ",,,,1.2,W", none, ",,,,1.2,N");
    check(&zdaMsg_t::decodeLocalOffset, -330, ",,,,-05,30", 225, ",,,,03,45", 30,
          ",,,,-00,30", // the hours decide, and they are 0
          59, ",,,,00,59", 2147483647, ",,,,35791394,07", -2147483647 - 1, ",,,,-35791394,08", none,
          ",,,,05,60|,,,,05,-1|,,,,05,|,,,,,30|,,,,05|,,,,35791394,08|,,,,-35791394,09|"
          ",,,,2147483647,59");
}

// What stands before a fault is stored.
TEST(catalogue, datesRmcByTheCenturyAndZdaAsSent) {
    const auto read = [](const std::string& body, std::string& out) {
        const nmeaFormat_t format = framed(body);
        const std::unique_ptr<const nmeaMsg_t> view(nmeaMsg_t::create(format));
        date_t date{77, 77, 77};
        const bool good = view->decodeDate(date);
        out = shown(good, date);
        return true;
    };
    checkTexts<std::string>(read, "good 23 3 c-6", "$GPRMC,,,,,,,,,230394", "good 31 2 c69",
                            "$GPRMC,,,,,,,,,310269", "good 1 1 c-30", "$GPRMC,,,,,,,,,010170",
                            "bad 77 77 77", "$GPRMC,,,,,,,,,23039|$GPZDA,,,07,2002|$GPZDA,,04,07",
                            "good 4 7 2", "$GPZDA,,4,7,02", "bad 4 7 77", "$GPZDA,,04,07,",
                            "bad 4 77 77", "$GPZDA,,04,,2002");
}

TEST(catalogue, takesOptionalAndOddFields) {
    const nmeaFormat_t before = framed("$GPVTG,1,T,2,M,3,N,4,K"), since = framed("$GPVTG,,,,,,,,,");
    EXPECT_TRUE(!vtgMsg_t(before).hasFixMode() && vtgMsg_t(since).hasFixMode());
    check(&vtgMsg_t::decodeFixMode, 'D', ",,,,,,,,D", none, ",,,,,,,K|,,,,,,,K,|,,,,,,,K,DD");
    // there when its field is, be it empty
    check(&dtmMsg_t::decodeLocalDatumSubdivision, "A", "W84,A", "", "W84,|W84,,", none, "W84");
    check(&psimSsbMsg_t::decodeBeaconNumber, 7, ",B07|,B-7|,7", 12, ",12|,ABC012", 0, ",B0", unset,
          ",B1x|,1B1|,B|,|,B4294967296|1");
    // of the angles of PTPSR some are passed on as sent
    check(&ptpsrMsg_t::decodeHeading, 1.5, ",,,,1.5");
    check(&ptpsrMsg_t::decodeInclinationRMS, rad(0.1), ",,,,,,,,0.1");
    check(&ptpsrMsg_t::decodeNumGPSSatellites, 65535, ",,,,,,,,,,65535", unset,
          ",,,,,,,,,,65536|,,,,,,,,,,70000|,,,,,,,,,,-1");
}

// Behind an entry 77 and, if all fields were good, before an entry 0.
TEST(catalogue, appendsSatellitesUsed) {
    const struct {
        const char* fields;
        std::vector<unsigned> ids;
    } cases[] = {{"A,3,04,05,,09,12,,,,,,,,2.5,1.3,2.1", {77, 4, 5, 9, 12, 0}},
                 {"A,3,,,,,,,,,,,,33,2.5", {77, 33, 0}},
                 {"A,3,7,7,,,,,,,,,,7", {77, 7, 7, 7, 0}},
                 {"A,3,04,05,09,1x,12,,,,,,,,2.5", {77, 4, 5, 9}},
                 {"A,3,,,,,,,,,,,1", {77, 1}}, // one field short
                 {"A", {77}}};
    for (const auto& row : cases) {
        const nmeaFormat_t format = framed("$GPGSA," + std::string(row.fields));
        std::vector<unsigned> ids{77};
        if (gsaMsg_t(format).decodeSatIds(ids)) {
            ids.push_back(0);
        }
        EXPECT_EQ(ids, row.ids) << row.fields;
    }
}

/// What each accessor of a companion gives where the raw values are 1 and 2: X or Y as sent, x or y
/// in radians, - nothing. The cases are the fields behind `start` and, behind a blank, the letters.
template <typename View, typename Companion>
void checkLetters(const std::string& start, const std::string& cases,
                  const std::vector<bool (Companion::*)(double&) const>& accessors) {
    for (const std::string& row : split(cases)) {
        const std::string fields = row.substr(0, row.find(' '));
        const nmeaFormat_t format = framed(start + fields);
        const View view(format);
        const Companion companion = Companion(view); // a plain value
        std::string found = fields + ' ';
        for (const auto accessor : accessors) {
            double out = 77;
            const bool good = (companion.*accessor)(out);
            found += good != (out != 77) ? '!'
                     : !good             ? '-'
                     : out == 1          ? 'X'
                     : out == 2          ? 'Y'
                     : out == rad(1)     ? 'x'
                     : out == rad(2)     ? 'y'
                                         : '?';
        }
        EXPECT_EQ(found, row) << start;
    }
}

TEST(catalogue, laysOutBeaconCoordinates) {
    using coords_t = psimSsbMsg_t::coords_t;
    std::string cases = "C,N,M,,2 -----Y----|P,H,M,1 X---------|C ----------";
    const std::string layouts = "|P,H,M,1,2 Xy--------|C,H,M,1,2 --XY------|C,N,M,1,2 ----XY----|"
                                "C,E,M,1,2 ----YX----|U,N,M,1,2 ------XY--|U,E,M,1,2 ------YX--|"
                                "R,N,M,1,2 --------xy";
    for (const std::string& type : split("C|P|U|R|c|p|u|r|CN|L|E|")) {
        for (const std::string& orientation : split("N|E|H|n|e|h|NE|C|")) {
            const std::string row = '|' + type + ',' + orientation + ",M,1,2 ";
            cases += layouts.find(row) == std::string::npos ? row + "----------" : "";
        }
    }
    checkLetters<psimSsbMsg_t, coords_t>(
        "$PSIMSSB,,,,,", cases + layouts,
        {&coords_t::decodeRange, &coords_t::decodeBearing, &coords_t::decodeStarboardOffset,
         &coords_t::decodeForwardOffset, &coords_t::decodeNorthOffset, &coords_t::decodeEastOffset,
         &coords_t::decodeUtmNorthing, &coords_t::decodeUtmEasting, &coords_t::decodeLatitude,
         &coords_t::decodeLongitude});
}

TEST(catalogue, laysOutObjectCoordinatesAndAdditionalInformation) {
    using coords_t = psimLbpMsg_t::coords_t;
    checkLetters<psimLbpMsg_t, coords_t>(
        "$PSIMLBP,,,,,",
        "C,1,2 XY----|L,1,2 YX----|U,1,2 --XY--|E,1,2 --YX--|R,1,2 ----xy|c,1,2 ------|"
        "N,1,2 ------|P,1,2 ------|r,1,2 ------|CL,1,2 ------|L,,2 Y-----|R,1 ----x-",
        {&coords_t::decodeNorthOffset, &coords_t::decodeEastOffset, &coords_t::decodeUtmNorthing,
         &coords_t::decodeUtmEasting, &coords_t::decodeLatitude, &coords_t::decodeLongitude});
    using addInfo_t = psimSsbMsg_t::addInfo_t;
    checkLetters<psimSsbMsg_t, addInfo_t>(
        "$PSIMSSB,,,,,,,,,,,,",
        "D,1,2 ---X|I,1,2 xy--|T,1,2 --X-|N,1,2 ----|C,1,2 ----|i,1,2 ----|,1,2 ----|DT,1,2 ----|"
        "I,,2 -y--|I,1 x---|D,,2 ----",
        {&addInfo_t::decodeRoll, &addInfo_t::decodePitch, &addInfo_t::decodeRangeTime,
         &addInfo_t::decodeDepth});
}

TEST(catalogue, namesTheLetters) {
    using ssb_t = psimSsbMsg_t;
    EXPECT_EQ(ssb_t::statusValid + ssb_t::statusInvalid + ssb_t::coordTypeCartesian +
                  ssb_t::coordTypePolar + ssb_t::coordTypeUtm + ssb_t::coordTypeRadians +
                  ssb_t::orientationNorth + ssb_t::orientationEast + ssb_t::orientationHead +
                  ssb_t::filterCodeMeasured + ssb_t::filterCodeFiltered +
                  ssb_t::filterCodePredicted + ssb_t::addInfoNone + ssb_t::addInfoTime +
                  ssb_t::addInfoDepth + ssb_t::addInfoCompass + ssb_t::addInfoInclinometer,
              "AVCPURNEHMFPNTDCI");
    using lbp_t = psimLbpMsg_t;
    EXPECT_EQ(lbp_t::typeVessel + lbp_t::typeRov1 + lbp_t::typeRov2 + lbp_t::typeRov3 +
                  lbp_t::typeRov4 + lbp_t::statusValid + lbp_t::statusUnknown +
                  lbp_t::coordTypeCartesianNE + lbp_t::coordTypeCartesianEN +
                  lbp_t::coordTypeUtmNE + lbp_t::coordTypeUtmEN + lbp_t::coordTypeRadians,
              "VeR1R2R3R4A???CLUER");
}

} // namespace
