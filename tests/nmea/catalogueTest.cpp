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
        const std::string address = (name == "VDM" ? "!AI" : name.size() > 3 ? "$" : "$GP") + name;
        const nmeaFormat_t format = framed(address);
        const std::unique_ptr<const nmeaMsg_t> view(nmeaMsg_t::create(format));
        ASSERT_EQ(view != nullptr, listed.rowCount > 0) << address;
        values_t values = valuesOf(index, address);
        const unsigned capabilities =
            (values.count("date") != 0 ? nmeaMsg_t::capabilityDate : 0) |
            (values.count("timeOfDay") != 0 ? nmeaMsg_t::capabilityTimeOfDay : 0);
        if (view != nullptr) {
            EXPECT_EQ(view->type(), format.type()) << address;
            EXPECT_EQ(view->capabilities(), name == "PTPSR" ? 0 : capabilities) << address;
        }
        for (const auto& [row, value] : values) {
            EXPECT_EQ(value, "") << "the address alone has a value: " << address << ' ' << row;
        }
    }
}

TEST(catalogue, givesAccessToAnySentence) {
    EXPECT_EQ(nmeaMsg_t::create(nmeaFormat_t()), nullptr);
    const nmeaFormat_t format = framed("$GPXYZ,M,,M,4");
    EXPECT_EQ(nmeaMsg_t::create(format), nullptr);
    const nmeaMsg_t original(format.type(), format), view = original;
    EXPECT_TRUE(&view.format() == &format && view.field(4) == format.field(4));
    EXPECT_TRUE(*view.addressField() == "$GPXYZ" && view.field(5) == nullptr);
    date_t date;
    timeOfDay_t time;
    EXPECT_FALSE(view.decodeDate(date) || view.decodeTimeOfDay(time));
    EXPECT_TRUE(view.findField("M", 0) == 1 && view.findField("M", 2) == 3);
    EXPECT_TRUE(view.findField("", 0) == 2 && view.findField("m", 0) == -1);
    EXPECT_TRUE(view.findField("4", 5) == -1 && view.findField("4", 4000000000U) == -1);
    EXPECT_EQ(view.getFields(0), (strings_t{"$GPXYZ", "M", "", "M", "4"}));
    EXPECT_EQ(view.getFields(1, 2), (strings_t{"M", ""}));
    EXPECT_EQ(view.getFields(3, 4294967295U), (strings_t{"M", "4"}));
    EXPECT_TRUE(view.getFields(0, 0).empty() && view.getFields(4294967295U, 2).empty());
}

TEST(catalogue, choosesTheUnit) {
    check({{"depth", 36.0 * 1200 / 3937, {"$SDDBT,36,f,11,M,6,F", "$SDDBT,36,f"}},
           {"depth", 11, {"$SDDBT,,f,11,M,6,F", "$SDDBT,36x,f,11,M", "$SDDBT,36,F,11,M"}},
           {"depth", 6.0 * 1200 / 3937 * 6, {"$SDDBT,36,,11,m,6,F", "$SDDBT,,,,M,6,F"}},
           {"depth", refused, {"$SDDBT,36", "$SDDBT,,,11", "$SDDBT,,,,,6", "$SDDBT,1,F,11,f,6,M"}},
           {"windSpeed", 10 * knot, {"$WIMWD,,,,,10,N,5.1,M", "$WIMWD,,,,,10,N", "$WIMWV,,,10,N"}},
           {"windSpeed", 5.1, {"$WIMWD,,,,,,N,5.1,M", "$WIMWD,,,,,10,n,5.1,M", "$WIMWV,,,5.1,M"}},
           {"windSpeed", 20 * 0.44704, {"$WIMWV,,,20,S"}},
           {"windSpeed", 20 / 3.6, {"$WIMWV,,,20,K"}},
           {"windSpeed",
            refused,
            {"$WIMWD,,,,,10,M,5.1,N", "$WIMWD,,,,,10", "$WIMWD,,,,,,,5.1", "$WIMWV,,,20,m",
             "$WIMWV,,,20,k", "$WIMWV,,,20,KM", "$WIMWV,,,20"}},
           {"speedOverGround",
            5 * knot,
            {"$GPVTG,,,,,5,N,10.2,K", "$GPVTG,,,,,5,N", "$GPRMC,,,,,,,5"}},
           {"speedOverGround", 10.2 / 3.6, {"$GPVTG,,,,,,N,10.2,K", "$GPVTG,,,,,5,n,10.2,K"}},
           {"speedOverGround", refused, {"$GPVTG,,,,,5,K,1,N", "$GPVTG,,,,,5", "$GPVTG,,,,,,,1"}}});
    double out = 77; // nothing is written before the field of the unit is there
    EXPECT_FALSE(dbtMsg_t(framed("$SDDBT,1")).decodeDepth(out));
    EXPECT_FALSE(mwvMsg_t(framed("$WIMWV,,,1")).decodeWindSpeed(out));
    EXPECT_EQ(out, 77);
}

TEST(catalogue, keepsSigns) {
    check({{"latitude", rad(48 + 7.038 / 60), {"$GPGLL,4807.038,N"}},
           {"latitude", -rad(48 + 7.038 / 60), {"$GPGLL,4807.038,S"}},
           {"latitude", refused, {"$GPGLL,4807.038", "$GPGLL,4807.038,n", "$GPGLL,4807.038,E"}},
           {"rateOfTurn", rad(-3.0 / 60), {"$TIROT,-3.0,A"}},
           {"magneticVariation", -rad(3.1), {"$GPRMC,,,,,,,,,,3.1,W"}},
           {"magneticVariation", refused, {"$GPRMC,,,,,,,,,,3.1,w", "$GPRMC,,,,,,,,,,3.1"}},
           {"latitudeOffset", -rad(0.5 / 60), {"$GPDTM,,,0.5,S", "$GPDTM,,,-0.5,N"}},
           {"latitudeOffset", rad(0.5 / 60), {"$GPDTM,,,0.5,N", "$GPDTM,,,-0.5,S"}},
           {"longitudeOffset", -rad(1.2 / 60), {"$GPDTM,,,,,1.2,W"}},
           {"localOffset", -330, {"$GPZDA,,,,,-05,30"}},
           {"localOffset", 225, {"$GPZDA,,,,,03,45"}},
           {"localOffset", 59, {"$GPZDA,,,,,-00,59"}}, // the hours decide, and they are 0
           {"localOffset", 2147483647, {"$GPZDA,,,,,35791394,07"}},
           {"localOffset", -2147483648.0, {"$GPZDA,,,,,-35791394,08"}},
           {"localOffset",
            refused,
            {"$GPZDA,,,,,05,60", "$GPZDA,,,,,05,-1", "$GPZDA,,,,,05", "$GPZDA,,,,,35791394,08",
             "$GPZDA,,,,,-35791394,09"}}});
}

TEST(catalogue, takesOptionalAndOddFields) {
    check(
        {{"beaconNumber", 7, {"$PSIMSSB,,B07", "$PSIMSSB,,B-7", "$PSIMSSB,,7"}},
         {"beaconNumber", 12, {"$PSIMSSB,,12", "$PSIMSSB,,ABC012"}},
         {"beaconNumber", refused, {"$PSIMSSB,,B1x", "$PSIMSSB,,1B1", "$PSIMSSB,,B", "$PSIMSSB,,"}},
         // some angles of PTPSR are passed on as sent
         {"heading", 1.5, {"$PTPSR,,,,,1.5"}},
         {"inclinationRMS", rad(0.1), {"$PTPSR,,,,,,,,,0.1"}},
         {"numGPSSatellites", 65535, {"$PTPSR,,,,,,,,,,,65535"}},
         {"numGPSSatellites", refused, {"$PTPSR,,,,,,,,,,,65536", "$PTPSR,,,,,,,,,,,-1"}}});
    EXPECT_TRUE(vtgMsg_t(framed("$GPVTG,,,,,,,,,")).hasFixMode());
    EXPECT_FALSE(vtgMsg_t(framed("$GPVTG,1,T,2,M,3,N,4,K")).hasFixMode());
    // there when its field is, be it empty
    std::string subdivision = "A";
    EXPECT_FALSE(dtmMsg_t(framed("$GPDTM,W84")).decodeLocalDatumSubdivision(subdivision));
    EXPECT_TRUE(dtmMsg_t(framed("$GPDTM,W84,")).decodeLocalDatumSubdivision(subdivision));
    EXPECT_EQ(subdivision, "");
    date_t date; // the year as sent, unlike that of RMC
    EXPECT_TRUE(zdaMsg_t(framed("$GPZDA,,4,7,02")).decodeDate(date));
    EXPECT_EQ(textOf(date), "2-7-4");
    EXPECT_FALSE(zdaMsg_t(framed("$GPZDA,,04,07")).decodeDate(date));
}

TEST(catalogue, appendsSatellitesUsed) {
    using ids_t = std::vector<unsigned>;
    ids_t ids{77};
    EXPECT_TRUE(gsaMsg_t(framed("$GPGSA,A,3,7,7,,9,12,,,,,,,33,2.5")).decodeSatIds(ids));
    EXPECT_EQ(ids, (ids_t{77, 7, 7, 9, 12, 33}));
    EXPECT_FALSE(gsaMsg_t(framed("$GPGSA,A,3,04,5,1x,12,,,,,,,,,2.5")).decodeSatIds(ids));
    EXPECT_EQ(ids, (ids_t{77, 7, 7, 9, 12, 33, 4, 5}));
    EXPECT_FALSE(gsaMsg_t(framed("$GPGSA,A,3,,,,,,,,,,,1")).decodeSatIds(ids)); // one field short
    EXPECT_EQ(ids, (ids_t{77, 7, 7, 9, 12, 33, 4, 5, 1}));
}

/// What the letters in a sentence make of the 1 and the 2 behind them, by the names of the rows.
/// All other letters give nothing.
using layouts_t = std::map<std::string, std::map<std::string, double>>;

void check(const layouts_t& layouts, strings_t letters, const std::string& before,
           const std::string& behind) {
    for (const auto& layout : layouts) {
        letters.push_back(layout.first);
    }
    for (const std::string& letter : letters) {
        const std::string text = before + letter + behind;
        values_t values = valuesOf(typeOfSentence(framed(text).type()), text);
        const auto given = layouts.find(letter);
        for (const auto& layout : layouts) {
            for (const auto& [name, value] : layout.second) {
                const bool isGiven = given != layouts.end() && given->second.count(name) != 0;
                EXPECT_EQ(values[name], isGiven ? textOf(given->second.at(name)) : "")
                    << name << ": " << text;
            }
        }
    }
}

TEST(catalogue, laysOutAcousticCoordinates) {
    strings_t letters{"", "CC"}, pairs;
    for (char c = 'A'; c <= 'z'; ++c) {
        letters.emplace_back(1, c);
    }
    for (const std::string& type : letters) {
        for (const char* orientation : {"N", "E", "H", "n", "e", "h", "NE", "C", ""}) {
            pairs.push_back(type + ',' + orientation);
        }
    }
    using ssb_t = psimSsbMsg_t;
    using lbp_t = psimLbpMsg_t;
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
    check({{lbp_t::coordTypeCartesianNE, {{"northOffset", 1}, {"eastOffset", 2}}},
           {lbp_t::coordTypeCartesianEN, {{"northOffset", 2}, {"eastOffset", 1}}},
           {lbp_t::coordTypeUtmNE, {{"utmNorthing", 1}, {"utmEasting", 2}}},
           {lbp_t::coordTypeUtmEN, {{"utmNorthing", 2}, {"utmEasting", 1}}},
           {lbp_t::coordTypeRadians, {{"latitude", rad(1)}, {"longitude", rad(2)}}}},
          letters, "$PSIMLBP,,,,,", ",1,2");
}

} // namespace
