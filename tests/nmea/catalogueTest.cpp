// The views: what is common to them, and the rules in which they differ. That accessors read their
// fields is held by perturbationTest.cpp.
#include <memory>

#include "kalo/kalo.h"
#include "tests/nmea/recordValues.h"

namespace {

using namespace kalo;

constexpr double knot = 0.514444;

/// The value of one row, and the sentences that give it; `refused` where they give none.
struct expected_t {
    const char* name;
    std::optional<double> value;
    std::vector<const char*> sentences;
};

void check(const std::vector<expected_t>& rows) {
    for (const expected_t& row : rows) {
        for (const char* text : row.sentences) {
            const values_t values = valuesOf(typeOfSentence(framed(text).type()), text);
            EXPECT_EQ(values.at(row.name), row.value ? textOf(*row.value) : "") << text;
        }
    }
}

TEST(catalogue, hasAViewForEveryType) {
    for (typeIndex_t index = 0; index < sentenceCount; ++index) {
        const recordType_t& listed = recordTypes[index];
        const std::string name(listed.name);
        const std::string address =
            name == "VDM" ? "!AIVDM" : (name.size() > 3 ? "$" : "$GP") + name;
        const nmeaFormat_t format = framed(address);
        EXPECT_EQ(typeOfSentence(format.type()), index) << address;
        const std::unique_ptr<const nmeaMsg_t> view(nmeaMsg_t::create(format));
        ASSERT_EQ(view != nullptr, listed.rowCount > 0) << address;
        unsigned capabilities = 0;
        for (const recordType_t::row_t& row : listed) {
            const std::string value = row.name;
            capabilities |= value == "date"        ? nmeaMsg_t::capabilityDate
                            : value == "timeOfDay" ? nmeaMsg_t::capabilityTimeOfDay
                                                   : 0;
        }
        if (view != nullptr) {
            EXPECT_EQ(view->type(), format.type()) << address;
            EXPECT_EQ(view->capabilities(), name == "PTPSR" ? 0 : capabilities) << address;
        }
        for (const auto& [row, value] : valuesOf(index, address)) {
            EXPECT_EQ(value, "") << "the address alone has a value: " << address << ' ' << row;
        }
    }
}

TEST(catalogue, givesAccessToAnySentence) {
    EXPECT_EQ(nmeaMsg_t::create(nmeaFormat_t()), nullptr);
    EXPECT_EQ(nmeaMsg_t::create(nmeaFormat_t("$GPGGA*00\r\n", 11)), nullptr);
    const nmeaFormat_t format = framed("$GPXYZ,M,,M,4");
    EXPECT_EQ(nmeaMsg_t::create(format), nullptr);
    const nmeaMsg_t original(format.type(), format), view = original;
    EXPECT_TRUE(&view.format() == &format && view.field(4) == format.field(4));
    EXPECT_TRUE(*view.addressField() == "$GPXYZ" && view.field(5) == nullptr);
    EXPECT_TRUE(view.findField("M", 0) == 1 && view.findField("M", 2) == 3);
    EXPECT_TRUE(view.findField("", 0) == 2 && view.findField("m", 0) == -1);
    EXPECT_TRUE(view.findField("4", 5) == -1 && view.findField("4", 4000000000U) == -1);
    using strings_t = std::vector<std::string>;
    EXPECT_EQ(view.getFields(3, 4294967295U), (strings_t{"M", "4"}));
    EXPECT_EQ(view.getFields(1, 2), (strings_t{"M", ""}));
    EXPECT_EQ(view.getFields(0), (strings_t{"$GPXYZ", "M", "", "M", "4"}));
    EXPECT_TRUE(view.getFields(0, 0).empty() && view.getFields(5).empty());
    EXPECT_TRUE(view.getFields(4294967295U, 2).empty());
}

TEST(catalogue, choosesTheUnit) {
    check({{"depth", 36.0 * 1200 / 3937, {"$SDDBT,36,f,11,M,6,F", "$SDDBT,36,f"}},
           {"depth", 11, {"$SDDBT,,f,11,M,6,F", "$SDDBT,36x,f,11,M", "$SDDBT,36,F,11,M"}},
           {"depth", 6.0 * 1200 / 3937 * 6, {"$SDDBT,36,,11,m,6,F", "$SDDBT,,,,M,6,F"}},
           {"depth", refused, {"$SDDBT,36", "$SDDBT,,,11", "$SDDBT,,,,,6", "$SDDBT,1,F,11,f,6,M"}},
           {"windSpeed", 10 * knot, {"$WIMWD,,,,,10,N,5.1,M", "$WIMWD,,,,,10,N"}},
           {"windSpeed", 5.1, {"$WIMWD,,,,,,N,5.1,M", "$WIMWD,,,,,10,n,5.1,M"}},
           {"windSpeed", refused, {"$WIMWD,,,,,10,M,5.1,N", "$WIMWD,,,,,10", "$WIMWD,,,,,,,5.1"}},
           {"speedOverGround", 5 * knot, {"$GPVTG,,,,,5,N,10.2,K", "$GPVTG,,,,,5,N"}},
           {"speedOverGround", 10.2 / 3.6, {"$GPVTG,,,,,,N,10.2,K", "$GPVTG,,,,,5,n,10.2,K"}},
           {"speedOverGround", refused, {"$GPVTG,,,,,5,K,1,N", "$GPVTG,,,,,5", "$GPVTG,,,,,,,1"}},
           {"windSpeed", 20, {"$WIMWV,270.0,R,20,M,A"}},
           {"windSpeed", 20 * knot, {"$WIMWV,,,20,N"}},
           {"windSpeed", 20 * 0.44704, {"$WIMWV,,,20,S"}},
           {"windSpeed", 20 / 3.6, {"$WIMWV,,,20,K"}},
           {"windSpeed",
            refused,
            {"$WIMWV,,,20,m", "$WIMWV,,,20,k", "$WIMWV,,,20,KM", "$WIMWV,,,20"}},
           {"speedOverGround", 22.4 * knot, {"$GPRMC,,,,,,,22.4"}}});
}

TEST(catalogue, keepsSigns) {
    check({{"latitude", rad(48 + 7.038 / 60), {"$GPGLL,4807.038,N"}},
           {"latitude", -rad(48 + 7.038 / 60), {"$GPGLL,4807.038,S"}},
           {"latitude", refused, {"$GPGLL,4807.038", "$GPGLL,4807.038,n", "$GPGLL,4807.038,E"}},
           {"rateOfTurn", rad(-3.0 / 60), {"$TIROT,-3.0,A"}},
           {"magneticVariation", rad(3.1), {"$GPRMC,,,,,,,,,,3.1,E"}},
           {"magneticVariation", -rad(3.1), {"$GPRMC,,,,,,,,,,3.1,W"}},
           {"magneticVariation", refused, {"$GPRMC,,,,,,,,,,3.1,w", "$GPRMC,,,,,,,,,,3.1"}},
           {"latitudeOffset", -rad(0.5 / 60), {"$GPDTM,,,0.5,S", "$GPDTM,,,-0.5,N"}},
           {"latitudeOffset", rad(0.5 / 60), {"$GPDTM,,,0.5,N", "$GPDTM,,,-0.5,S"}},
           {"latitudeOffset", refused, {"$GPDTM,,,0.5,E", "$GPDTM,,,0.5"}},
           {"longitudeOffset", rad(1.2 / 60), {"$GPDTM,,,,,1.2,E"}},
           {"longitudeOffset", -rad(1.2 / 60), {"$GPDTM,,,,,1.2,W"}},
           {"localOffset", -330, {"$GPZDA,,,,,-05,30"}},
           {"localOffset", 225, {"$GPZDA,,,,,03,45"}},
           {"localOffset", 30, {"$GPZDA,,,,,-00,30"}}, // the hours decide, and they are 0
           {"localOffset", 59, {"$GPZDA,,,,,00,59"}},
           {"localOffset", 2147483647, {"$GPZDA,,,,,35791394,07"}},
           {"localOffset", -2147483648.0, {"$GPZDA,,,,,-35791394,08"}},
           {"localOffset",
            refused,
            {"$GPZDA,,,,,05,60", "$GPZDA,,,,,05,-1", "$GPZDA,,,,,05", "$GPZDA,,,,,35791394,08",
             "$GPZDA,,,,,-35791394,09", "$GPZDA,,,,,2147483647,59"}}});
}

TEST(catalogue, takesOptionalAndOddFields) {
    const nmeaFormat_t before = framed("$GPVTG,1,T,2,M,3,N,4,K"), since = framed("$GPVTG,,,,,,,,,");
    EXPECT_TRUE(!vtgMsg_t(before).hasFixMode() && vtgMsg_t(since).hasFixMode());
    // there when its field is, be it empty
    std::string subdivision = "A";
    EXPECT_FALSE(dtmMsg_t(framed("$GPDTM,W84")).decodeLocalDatumSubdivision(subdivision));
    EXPECT_TRUE(dtmMsg_t(framed("$GPDTM,W84,")).decodeLocalDatumSubdivision(subdivision));
    EXPECT_EQ(subdivision, "");
    // years as sent, unlike those of RMC
    date_t date;
    EXPECT_TRUE(zdaMsg_t(framed("$GPZDA,,4,7,02")).decodeDate(date));
    EXPECT_TRUE(date.year == 2 && date.month == 7 && date.day == 4);
    EXPECT_FALSE(zdaMsg_t(framed("$GPZDA,,04,07")).decodeDate(date));
    check(
        {{"beaconNumber", 7, {"$PSIMSSB,,B07", "$PSIMSSB,,B-7", "$PSIMSSB,,7"}},
         {"beaconNumber", 12, {"$PSIMSSB,,12", "$PSIMSSB,,ABC012"}},
         {"beaconNumber", refused, {"$PSIMSSB,,B1x", "$PSIMSSB,,1B1", "$PSIMSSB,,B", "$PSIMSSB,,"}},
         // some angles of PTPSR are passed on as sent
         {"heading", 1.5, {"$PTPSR,,,,,1.5"}},
         {"inclinationRMS", rad(0.1), {"$PTPSR,,,,,,,,,0.1"}},
         {"numGPSSatellites", 65535, {"$PTPSR,,,,,,,,,,,65535"}},
         {"numGPSSatellites", refused, {"$PTPSR,,,,,,,,,,,65536", "$PTPSR,,,,,,,,,,,-1"}}});
}

TEST(catalogue, appendsSatellitesUsed) {
    const struct {
        const char* sentence;
        bool good;
        std::vector<unsigned> ids; // behind 77, which is there before
    } cases[] = {{"$GPGSA,A,3,04,05,,09,12,,,,,,,,2.5,1.3,2.1", true, {77, 4, 5, 9, 12}},
                 {"$GPGSA,A,3,,,,,,,,,,,,33,2.5", true, {77, 33}},
                 {"$GPGSA,A,3,7,7,,,,,,,,,,7", true, {77, 7, 7, 7}},
                 {"$GPGSA,A,3,04,05,09,1x,12,,,,,,,,2.5", false, {77, 4, 5, 9}},
                 {"$GPGSA,A,3,,,,,,,,,,,1", false, {77, 1}}, // one field short
                 {"$GPGSA,A", false, {77}}};
    for (const auto& row : cases) {
        std::vector<unsigned> ids{77};
        EXPECT_EQ(gsaMsg_t(framed(row.sentence)).decodeSatIds(ids), row.good) << row.sentence;
        EXPECT_EQ(ids, row.ids) << row.sentence;
    }
}

/// The values that companions give, by the names of the rows.
using companions_t = std::map<std::string, double>;

companions_t companionsOf(const std::string& text) {
    companions_t found;
    values_t values = valuesOf(typeOfSentence(framed(text).type()), text);
    for (const char* name : {"range", "bearing", "starboardOffset", "forwardOffset", "northOffset",
                             "eastOffset", "utmNorthing", "utmEasting", "latitude", "longitude",
                             "roll", "pitch", "rangeTime", "addInfoDepth"}) {
        if (!values[name].empty()) {
            found[name] = std::stod(values[name]);
        }
    }
    return found;
}

/// What the letters in a sentence make of the 1 and the 2 behind them. All other letters give
/// nothing.
using layouts_t = std::map<std::string, companions_t>;

void check(const layouts_t& layouts, const std::vector<std::string>& letters,
           const std::string& before, const std::string& behind) {
    std::size_t known = 0;
    for (const std::string& letter : letters) {
        const auto row = layouts.find(letter);
        known += row != layouts.end() ? 1 : 0;
        EXPECT_EQ(companionsOf(before + letter + behind),
                  row != layouts.end() ? row->second : companions_t{})
            << letter;
    }
    EXPECT_EQ(known, layouts.size());
}

TEST(catalogue, laysOutAcousticCoordinates) {
    std::vector<std::string> letters{"", "CC"}, pairs;
    for (char c = 'A'; c <= 'z'; ++c) {
        letters.emplace_back(1, c);
    }
    for (const std::string& type : letters) {
        for (const char* orientation : {"N", "E", "H", "n", "e", "h", "NE", "C", ""}) {
            pairs.push_back(type + ',' + orientation);
        }
    }
    using ssb_t = psimSsbMsg_t;
    const std::string north = ',' + ssb_t::orientationNorth, east = ',' + ssb_t::orientationEast,
                      head = ',' + ssb_t::orientationHead;
    check({{ssb_t::coordTypePolar + head, {{"range", 1}, {"bearing", rad(2)}}},
           {ssb_t::coordTypeCartesian + head, {{"starboardOffset", 1}, {"forwardOffset", 2}}},
           {ssb_t::coordTypeCartesian + north, {{"northOffset", 1}, {"eastOffset", 2}}},
           {ssb_t::coordTypeCartesian + east, {{"northOffset", 2}, {"eastOffset", 1}}},
           {ssb_t::coordTypeUtm + north, {{"utmNorthing", 1}, {"utmEasting", 2}}},
           {ssb_t::coordTypeUtm + east, {{"utmNorthing", 2}, {"utmEasting", 1}}},
           {ssb_t::coordTypeRadians + north, {{"latitude", rad(1)}, {"longitude", rad(2)}}}},
          pairs, "$PSIMSSB,,,,,", ",M,1,2");
    check({{ssb_t::addInfoInclinometer, {{"roll", rad(1)}, {"pitch", rad(2)}}},
           {ssb_t::addInfoTime, {{"rangeTime", 1}}},
           {ssb_t::addInfoDepth, {{"addInfoDepth", 1}}}},
          letters, "$PSIMSSB,,,,,,,,,,,,", ",1,2");
    using lbp_t = psimLbpMsg_t;
    check({{lbp_t::coordTypeCartesianNE, {{"northOffset", 1}, {"eastOffset", 2}}},
           {lbp_t::coordTypeCartesianEN, {{"northOffset", 2}, {"eastOffset", 1}}},
           {lbp_t::coordTypeUtmNE, {{"utmNorthing", 1}, {"utmEasting", 2}}},
           {lbp_t::coordTypeUtmEN, {{"utmNorthing", 2}, {"utmEasting", 1}}},
           {lbp_t::coordTypeRadians, {{"latitude", rad(1)}, {"longitude", rad(2)}}}},
          letters, "$PSIMLBP,,,,,", ",1,2");
}

} // namespace
