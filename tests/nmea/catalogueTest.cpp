// The rules in which the sentences differ. What every plain accessor reads is held by the expected
// output of the shipped recording.
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <typeinfo>
#include <vector>

#include <gtest/gtest.h>

#include "kalo/kalo.h"
#include "tests/sentence.h"
#include "tools/recordTable.h"

namespace {

using namespace kalo;

constexpr double pi = 3.141592653589793;
constexpr std::nullopt_t none = std::nullopt;

/// What an accessor gives for some sentences: the fields behind the address, blanks between them.
template <typename T>
struct case_t {
    std::optional<T> value; // none: the accessor gives false
    const char* sentences;
};

template <typename View, typename T>
void check(bool (View::*accessor)(T&) const, const std::vector<case_t<T>>& cases) {
    for (const case_t<T>& row : cases) {
        std::istringstream stream(row.sentences);
        for (std::string fields; stream >> fields;) {
            const nmeaFormat_t format = framed("$GPXYZ," + fields);
            const View view(format);
            T out{};
            const bool good = (view.*accessor)(out);
            EXPECT_EQ(good ? std::optional<T>(out) : none, row.value) << fields;
        }
    }
}

// Field i of each sentence reads "0i3519" or "i3519": as a time of day its hour is the index of the
// field, as a date ddmmyy its day is.
TEST(catalogue, hasAViewForEveryType) {
    constexpr int no = -1;
    const struct {
        const char* address;
        const std::type_info& view;
        unsigned capabilities;
        int hour, day;
    } cases[] = {
        {"$GPXYZ", typeid(void), 0, no, no},          {"$GPALM", typeid(void), 0, no, no},
        {"$SDDBT", typeid(dbtMsg_t), 0, no, no},      {"$SDDPT", typeid(dptMsg_t), 0, no, no},
        {"$GPDTM", typeid(dtmMsg_t), 0, no, no},      {"$GPGBS", typeid(gbsMsg_t), 2, 1, no},
        {"$GPGGA", typeid(ggaMsg_t), 2, 1, no},       {"$GPGLL", typeid(gllMsg_t), 2, 5, no},
        {"$GPGSA", typeid(gsaMsg_t), 0, no, no},      {"$GPGST", typeid(gstMsg_t), 2, 1, no},
        {"$GPGSV", typeid(gsvMsg_t), 0, no, no},      {"$GPHDT", typeid(hdtMsg_t), 0, no, no},
        {"$WIMWD", typeid(mwdMsg_t), 0, no, no},      {"$WIMWV", typeid(mwvMsg_t), 0, no, no},
        {"$GPRMC", typeid(rmcMsg_t), 3, 1, 9},        {"$TIROT", typeid(rotMsg_t), 0, no, no},
        {"$HETHS", typeid(thsMsg_t), 0, no, no},      {"!AIVDM", typeid(void), 0, no, no},
        {"$GPVTG", typeid(vtgMsg_t), 0, no, no},      {"$GPZDA", typeid(zdaMsg_t), 3, 1, 23519},
        {"$PZWBGGA", typeid(pzwbGgaMsg_t), 2, 1, no}, {"$PZWBGST", typeid(pzwbGstMsg_t), 2, 1, no},
        {"$PZWBMDE", typeid(pzwbMdeMsg_t), 2, 1, no}, {"$PSIMLBP", typeid(psimLbpMsg_t), 2, 1, no},
        {"$PSIMSSB", typeid(psimSsbMsg_t), 2, 1, no}, {"$PTPSR", typeid(ptpsrMsg_t), 0, 2, no}};
    EXPECT_EQ(std::size(cases), static_cast<std::size_t>(&satellitesType - recordTypes) + 1);
    for (std::size_t type = 0; type < std::size(cases); ++type) {
        const auto& row = cases[type];
        std::string body = row.address;
        for (unsigned i = 1; i < 20; ++i) {
            body += (i < 10 ? ",0" : ",") + std::to_string(i) + "3519";
        }
        const nmeaFormat_t format = framed(body);
        EXPECT_EQ(static_cast<std::size_t>(format.type()), type);
        const std::unique_ptr<const nmeaMsg_t> view(nmeaMsg_t::create(format));
        ASSERT_EQ(view == nullptr, row.view == typeid(void)) << row.address;
        const recordType_t* const record = sentenceType(format.type());
        EXPECT_EQ(view != nullptr, record != nullptr && record->rowCount > 0)
            << row.address << ": the tool's record table";
        if (view == nullptr) {
            continue;
        }
        const nmeaMsg_t& msg = *view;
        EXPECT_TRUE(typeid(msg) == row.view && msg.type() == format.type()) << row.address;
        EXPECT_EQ(msg.capabilities(), row.capabilities) << row.address;
        timeOfDay_t time;
        date_t date;
        EXPECT_EQ(msg.decodeTimeOfDay(time) ? static_cast<int>(time.hour) : no, row.hour)
            << row.address;
        EXPECT_EQ(msg.decodeDate(date) ? static_cast<int>(date.day) : no, row.day) << row.address;

        // The address alone has a view too, which has no value.
        const nmeaFormat_t shortFormat = framed(row.address);
        const std::unique_ptr<const nmeaMsg_t> shortView(nmeaMsg_t::create(shortFormat));
        ASSERT_NE(shortView, nullptr) << row.address;
        source_t source;
        source.sentence = shortView.get();
        for (const valueRow_t& value : *record) {
            const value_t read = value.read(source);
            EXPECT_TRUE(std::holds_alternative<undecoded_t>(read) ||
                        std::holds_alternative<absent_t>(read))
                << row.address << ' ' << value.name;
        }
    }
}

TEST(catalogue, choosesTheUnit) {
    check<dbtMsg_t, double>(
        &dbtMsg_t::decodeDepth,
        {{36.1 * 1200 / 3937, "036.1,f,011.0,M,006.0,F 036.1,f"},
         {11.0, ",f,011.0,M,006.0,F 36x,f,011.0,M 036.1,F,011.0,M 036.1,ff,011.0,M 036.1,,011.0,M"},
         {6.0 * 1200 / 3937 * 6, "036.1,,011.0,m,006.0,F ,,,M,006.0,F ,,,,006.0,F"},
         {none, "036.1 036.1,F,011.0 ,,,,006.0 ,,,,006.0,f ,,,,006.0,FF ,,,,,F"}});
    check<mwdMsg_t, double>(
        &mwdMsg_t::decodeWindSpeed,
        {{10.0 * 0.514444, ",,,,10.0,N,5.1,M ,,,,10.0,N"},
         {5.1, ",,,,,,5.1,M ,,,,,N,5.1,M ,,,,10.0,n,5.1,M ,,,,10.0,NN,5.1,M"},
         {none, ",,,,10.0,,5.1,m ,,,,10.0,,5.1,N ,,,,10.0,,5.1 ,,,,10.0 ,,,,10.0,M,,M"}});
    check<vtgMsg_t, double>(
        &vtgMsg_t::decodeSpeedOverGround,
        {{5.5 * 0.514444, "054.7,T,034.4,M,005.5,N,010.2,K,A ,,,,5.5,N"},
         {10.2 / 3.6, ",,,,,,010.2,K ,,,,,N,010.2,K ,,,,5.5,n,010.2,K ,,,,5.5,,010.2,K"},
         {none, ",,,,5.5,n,010.2,k ,,,,5.5,K,, ,,,,5.5,,010.2 ,,,,5.5 ,,,,5.5,M,010.2,N"}});
    check<mwvMsg_t, double>(
        &mwvMsg_t::decodeWindSpeed,
        {{20.0, "270.0,R,20.0,M,A ,,20.0,M"},
         {20.0 * 0.514444, ",,20.0,N"},
         {20.0 * 0.44704, ",,20.0,S"},
         {20.0 / 3.6, ",,20.0,K"},
         {none, ",,20.0,m ,,20.0,n ,,20.0,s ,,20.0,k ,,20.0,KM ,,20.0, ,,20.0 ,,,K"}});
    check<dptMsg_t, double>(&dptMsg_t::decodeDepth, {{11.5, "11.5,0.3 11.5"}, {none, ",0.3"}});
    check<rmcMsg_t, double>(&rmcMsg_t::decodeSpeedOverGround,
                            {{22.4 * 0.514444, ",,,,,,022.4"}, {none, ",,,,,, ,,,,,,x"}});
}

TEST(catalogue, leavesTheOutputAloneWithoutAUnit) {
    const nmeaFormat_t one = framed("$GPXYZ,1"), three = framed("$GPXYZ,,,1");
    const nmeaFormat_t five = framed("$GPXYZ,,,,,1"), seven = framed("$GPXYZ,,,,,,,1");
    double out = 77;
    EXPECT_FALSE(dbtMsg_t(one).decodeDepth(out) || dbtMsg_t(three).decodeDepth(out) ||
                 dbtMsg_t(five).decodeDepth(out) || mwvMsg_t(three).decodeWindSpeed(out) ||
                 mwdMsg_t(five).decodeWindSpeed(out) || mwdMsg_t(seven).decodeWindSpeed(out) ||
                 vtgMsg_t(five).decodeSpeedOverGround(out) ||
                 vtgMsg_t(seven).decodeSpeedOverGround(out));
    EXPECT_EQ(out, 77);
}

TEST(catalogue, keepsSigns) {
    check<rotMsg_t, double>(
        &rotMsg_t::decodeRateOfTurn,
        {{-3.0 / 60 * pi / 180, "-3.0,A"}, {7.2 / 60 * pi / 180, "7.2,V"}, {none, ",A"}});
    check<rmcMsg_t, double>(&rmcMsg_t::decodeMagneticVariation,
                            {{-(pi * 3.1 / 180), ",,,,,,,,,003.1,W"},
                             {pi * 3.1 / 180, ",,,,,,,,,003.1,E"},
                             {none, ",,,,,,,,,003.1,w ,,,,,,,,,003.1 ,,,,,,,,,,W"}});
    check<dtmMsg_t, double>(&dtmMsg_t::decodeLatitudeOffset,
                            {{-(0.5 / 60) * pi / 180, "999,A,0.5,S,1.2,E ,,-0.5,N"},
                             {0.5 / 60 * pi / 180, ",,0.5,N ,,-0.5,S"},
                             {none, ",,0.5,E ,,0.5 ,,,N"}});
    check<dtmMsg_t, double>(&dtmMsg_t::decodeLongitudeOffset,
                            {{1.2 / 60 * pi / 180, "999,A,0.5,S,1.2,E"},
                             {-(1.2 / 60) * pi / 180, ",,,,1.2,W"},
                             {none, ",,,,1.2,N ,,,,1.2"}});
    check<zdaMsg_t, int>(
        &zdaMsg_t::decodeLocalOffset,
        {{-330, ",,,,-05,30"},
         {225, ",,,,03,45"},
         {59, ",,,,00,59"},
         {30, ",,,,-00,30"}, // the hours decide, and they are 0
         {2147483647, ",,,,35791394,07"},
         {-2147483647 - 1, ",,,,-35791394,08"},
         {none, ",,,,05,60 ,,,,05,-1 ,,,,05, ,,,,,30 ,,,,05 ,,,,35791394,08 ,,,,-35791394,09 "
                ",,,,2147483647,59"}});
}

TEST(catalogue, datesRmcByTheCenturyAndZdaAsSent) {
    const struct {
        const char* body;
        bool good;
        date_t date; // from {77, 77, 77}
    } cases[] = {
        {"$GPRMC,,,,,,,,,230394", true, {currentCentury() - 6, 3, 23}},
        {"$GPRMC,,,,,,,,,310269", true, {currentCentury() + 69, 2, 31}},
        {"$GPRMC,,,,,,,,,010170", true, {currentCentury() - 30, 1, 1}},
        {"$GPRMC,,,,,,,,,23039", false, {77, 77, 77}},
        {"$GPZDA,,04,07,2002", true, {2002, 7, 4}},
        {"$GPZDA,,4,7,02", true, {2, 7, 4}}, // no completion
        // what stands before the fault has been stored
        {"$GPZDA,,04,07,", false, {77, 7, 4}},
        {"$GPZDA,,04,,2002", false, {77, 77, 4}},
        {"$GPZDA,,,07,2002", false, {77, 77, 77}},
        {"$GPZDA,,04,07", false, {77, 77, 77}}, // a field missing
    };
    for (const auto& row : cases) {
        const nmeaFormat_t format = framed(row.body);
        const std::unique_ptr<const nmeaMsg_t> view(nmeaMsg_t::create(format));
        date_t date{77, 77, 77};
        EXPECT_EQ(view->decodeDate(date), row.good) << row.body;
        EXPECT_TRUE(date.year == row.date.year && date.month == row.date.month &&
                    date.day == row.date.day)
            << row.body << ": " << date.year << '-' << date.month << '-' << date.day;
    }
}

TEST(catalogue, takesOptionalFields) {
    const std::string vtg = "$GPVTG,1,T,2,M,3,N,4,K";
    const nmeaFormat_t before = framed(vtg), since = framed(vtg + ',');
    EXPECT_TRUE(!vtgMsg_t(before).hasFixMode() && vtgMsg_t(since).hasFixMode());
    check<vtgMsg_t, char>(&vtgMsg_t::decodeFixMode,
                          {{'D', ",,,,,,,,D"}, {none, ",,,,,,,K ,,,,,,,K, ,,,,,,,K,DD"}});
    using text_t = std::string; // there when its field is, be it empty
    check<dtmMsg_t, text_t>(&dtmMsg_t::decodeLocalDatumSubdivision,
                            {{"A", "W84,A"}, {"", "W84, W84,,"}, {none, "W84"}});
    check<psimSsbMsg_t, text_t>(&psimSsbMsg_t::decodeStatus, {{"", ",, ,,,"}, {none, ","}});
    check<ptpsrMsg_t, text_t>(&ptpsrMsg_t::decodeSentenceFormatter, {{"", ",1"}, {"A", "A"}});
}

TEST(catalogue, appendsSatellitesUsed) {
    using ids_t = std::vector<unsigned>;
    const struct {
        const char* fields;
        bool good;
        ids_t appended;
    } cases[] = {
        {"A,3,04,05,,09,12,,,,,,,,2.5,1.3,2.1", true, {4, 5, 9, 12}},
        {"A,3,,,,,,,,,,,,33", true, {33}},
        {"A,3,,,,,,,,,,,,,2.5", true, {}},
        {"A,3,7,7,,,,,,,,,,7", true, {7, 7, 7}},
        {"A,3,04,05,09,1x,12,,,,,,,,2.5", false, {4, 5, 9}},
        {"A,3,1,2,3,4,5,6,7,8", false, {1, 2, 3, 4, 5, 6, 7, 8}},
        {"A,3,,,,,,,,,,,1", false, {1}}, // one field short
        {"A", false, {}},
    };
    for (const auto& row : cases) {
        const nmeaFormat_t format = framed("$GPGSA," + std::string(row.fields));
        ids_t ids{77}, expected{77};
        expected.insert(expected.end(), row.appended.begin(), row.appended.end());
        EXPECT_EQ(gsaMsg_t(format).decodeSatIds(ids), row.good) << row.fields;
        EXPECT_EQ(ids, expected) << row.fields;
    }
}

TEST(catalogue, convertsSomeAnglesOfPtpsr) {
    const char* const all = "ATT,1,A,M,123.45,-1.5,2.0,0.25,0.10,-0.35,65535,65536,70000,-1,0";
    check<ptpsrMsg_t, double>(&ptpsrMsg_t::decodeHeading, {{123.45, all}});
    check<ptpsrMsg_t, double>(&ptpsrMsg_t::decodeInclination, {{-1.5, all}});
    check<ptpsrMsg_t, double>(&ptpsrMsg_t::decodeHeadingRMS, {{0.25, all}});
    check<ptpsrMsg_t, double>(&ptpsrMsg_t::decodeInclinationRMS, {{pi * 0.10 / 180, all}});
    check<ptpsrMsg_t, double>(&ptpsrMsg_t::decodeAzimuthOffset, {{pi * -0.35 / 180, all}});
    using count_t = unsigned short;
    check<ptpsrMsg_t, count_t>(&ptpsrMsg_t::decodeNumGPSSatellites, {{count_t{65535}, all}});
    check<ptpsrMsg_t, count_t>(&ptpsrMsg_t::decodeNumGLONASSSatellites, {{none, all}});
    check<ptpsrMsg_t, count_t>(&ptpsrMsg_t::decodeNumBeiDouSatellites, {{none, all}});
    check<ptpsrMsg_t, count_t>(&ptpsrMsg_t::decodeNumGalileoSatellites, {{none, all}});
    check<ptpsrMsg_t, count_t>(&ptpsrMsg_t::decodeNumOtherSatellites, {{count_t{0}, all}});
}

TEST(catalogue, findsTheBeaconNumber) {
    check<psimSsbMsg_t, unsigned>(&psimSsbMsg_t::decodeBeaconNumber,
                                  {{7, ",B07 ,B-7 ,7"},
                                   {12, ",12 ,ABC012"},
                                   {0, ",B0"},
                                   {none, ",B1x ,1B1 ,B , ,B4294967296 1"}});
}

constexpr double rawX = 10.5, rawY = -3.0;

/// What each accessor of a companion gives: X or Y as sent, x or y in radians, - nothing.
template <typename Companion, typename View>
std::string letters(const std::vector<bool (Companion::*)(double&) const>& accessors,
                    const std::string& body) {
    const nmeaFormat_t format = framed(body);
    const View view(format);
    const Companion companion = Companion(view); // a plain value
    std::string text;
    for (const auto accessor : accessors) {
        double out = 77;
        const bool good = (companion.*accessor)(out);
        text += !good                    ? (out == 77 ? '-' : '!')
                : out == rawX            ? 'X'
                : out == rawY            ? 'Y'
                : out == pi * rawX / 180 ? 'x'
                : out == pi * rawY / 180 ? 'y'
                                         : '?';
    }
    return text;
}

TEST(catalogue, laysOutBeaconCoordinates) {
    using coords_t = psimSsbMsg_t::coords_t;
    const auto lettersOf = [](const std::string& body) {
        return letters<coords_t, psimSsbMsg_t>(
            {&coords_t::decodeRange, &coords_t::decodeBearing, &coords_t::decodeStarboardOffset,
             &coords_t::decodeForwardOffset, &coords_t::decodeNorthOffset,
             &coords_t::decodeEastOffset, &coords_t::decodeUtmNorthing, &coords_t::decodeUtmEasting,
             &coords_t::decodeLatitude, &coords_t::decodeLongitude},
            "$PSIMSSB,,,,," + body);
    };
    const struct {
        const char* letters; // coordinate type and orientation
        const char* expected;
    } layouts[] = {{"P,H", "Xy--------"}, {"C,H", "--XY------"}, {"C,N", "----XY----"},
                   {"C,E", "----YX----"}, {"U,N", "------XY--"}, {"U,E", "------YX--"},
                   {"R,N", "--------xy"}};
    for (const char* type : {"C", "P", "U", "R", "c", "p", "u", "r", "CN", "L", "E", ""}) {
        for (const char* orientation : {"N", "E", "H", "n", "e", "h", "NE", "C", ""}) {
            const std::string pair = std::string(type) + ',' + orientation;
            std::string expected = "----------";
            for (const auto& row : layouts) {
                expected = pair == row.letters ? row.expected : expected;
            }
            EXPECT_EQ(lettersOf(pair + ",M,10.5,-3.0"), expected) << pair;
        }
    }
    EXPECT_EQ(lettersOf("C,N,M,,-3.0"), "-----Y----"); // a raw field is empty, or missing
    EXPECT_EQ(lettersOf("P,H,M,10.5"), "X---------");
    EXPECT_EQ(lettersOf("R,N,M,,x"), "----------");
    EXPECT_EQ(lettersOf("C"), "----------");
}

TEST(catalogue, laysOutObjectCoordinates) {
    using coords_t = psimLbpMsg_t::coords_t;
    const struct {
        const char* fields; // from the coordinate type on
        const char* expected;
    } cases[] = {
        {"C,10.5,-3.0", "XY----"}, {"L,10.5,-3.0", "YX----"}, {"U,10.5,-3.0", "--XY--"},
        {"E,10.5,-3.0", "--YX--"}, {"R,10.5,-3.0", "----xy"}, {"c,10.5,-3.0", "------"},
        {"N,10.5,-3.0", "------"}, {"P,10.5,-3.0", "------"}, {"CL,10.5,-3.0", "------"},
        {",10.5,-3.0", "------"},  {"r,10.5,-3.0", "------"}, {"L,,-3.0", "Y-----"},
        {"R,10.5", "----x-"},
    };
    for (const auto& row : cases) {
        EXPECT_EQ((letters<coords_t, psimLbpMsg_t>(
                      {&coords_t::decodeNorthOffset, &coords_t::decodeEastOffset,
                       &coords_t::decodeUtmNorthing, &coords_t::decodeUtmEasting,
                       &coords_t::decodeLatitude, &coords_t::decodeLongitude},
                      "$PSIMLBP,,,,," + std::string(row.fields))),
                  row.expected)
            << row.fields;
    }
    check<psimLbpMsg_t, double>(&psimLbpMsg_t::decodeOrientation,
                                {{pi * 90 / 180, ",,,,,,,,,,90"}});
}

TEST(catalogue, readsAdditionalInformationByItsKind) {
    using addInfo_t = psimSsbMsg_t::addInfo_t;
    const struct {
        const char* fields;   // from the kind on
        const char* expected; // roll, pitch, time of range, depth
    } cases[] = {
        {"D,10.5,-3.0", "---X"}, {"I,10.5,-3.0", "xy--"},  {"T,10.5,-3.0", "--X-"},
        {"N,10.5,-3.0", "----"}, {"C,10.5,-3.0", "----"},  {"i,10.5,-3.0", "----"},
        {",10.5,-3.0", "----"},  {"DT,10.5,-3.0", "----"}, {"I,,-3.0", "-y--"},
        {"I,10.5", "x---"},      {"D,,-3.0", "----"},
    };
    for (const auto& row : cases) {
        EXPECT_EQ((letters<addInfo_t, psimSsbMsg_t>(
                      {&addInfo_t::decodeRoll, &addInfo_t::decodePitch, &addInfo_t::decodeRangeTime,
                       &addInfo_t::decodeDepth},
                      "$PSIMSSB,,,,,,,,,,,," + std::string(row.fields))),
                  row.expected)
            << row.fields;
    }
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
