// What each sentence holds: the rows of its values, by the class of its view. The list of sentences
// itself is kalo/nmea/sentences.h.
#pragma once

#include "kalo/nmea/sentences.h"
#include "tools/record/plausible.h"
#include "tools/record/sentenceReaders.h"
#include "tools/record/valueRow.h"

/// The rows of a view's sentence, as `rows`.
template <typename View>
struct valuesOf_t;

template <>
struct valuesOf_t<kalo::noView_t> {
    static constexpr std::tuple<> rows{};
};

template <>
struct valuesOf_t<kalo::dbtMsg_t> {
    using view_t = kalo::dbtMsg_t;
    static constexpr std::tuple rows{
        row_t<&view_t::decodeDepth>{"depth", metre, range(1, 6), "below the transducer"}};
};

template <>
struct valuesOf_t<kalo::dptMsg_t> {
    using view_t = kalo::dptMsg_t;
    static constexpr std::tuple rows{
        row_t<&view_t::decodeDepth>{"depth", metre, fields(1), "below the transducer"}};
};

template <>
struct valuesOf_t<kalo::dtmMsg_t> {
    using view_t = kalo::dtmMsg_t;
    static constexpr std::tuple rows{
        row_t<&view_t::decodeLocalDatum>{"localDatum", noUnit, fields(1),
                                         "code of the datum of the positions, such as W84"},
        row_t<&view_t::decodeLocalDatumSubdivision>{"localDatumSubdivision", noUnit, fields(2),
                                                    "code within that datum"},
        row_t<&view_t::decodeLatitudeOffset>{"latitudeOffset", angle, fields(3, 4),
                                             "from the reference datum, north positive"},
        row_t<&view_t::decodeLongitudeOffset>{"longitudeOffset", angle, fields(5, 6),
                                              "from the reference datum, east positive"},
        row_t<&view_t::decodeAltitudeOffset>{"altitudeOffset", metre, fields(7),
                                             "from the reference datum"},
        row_t<&view_t::decodeReferenceDatum>{"referenceDatum", noUnit, fields(8),
                                             "code of the reference datum"}};
};

template <>
struct valuesOf_t<kalo::gbsMsg_t> {
    using view_t = kalo::gbsMsg_t;
    static constexpr std::tuple rows{
        row_t<ownTime>{"timeOfDay", noUnit, fields(1), "UTC time of the fix"},
        row_t<&view_t::decodeLatitudeError>{"latitudeError", metre, fields(2),
                                            "expected error of the position"},
        row_t<&view_t::decodeLongitudeError>{"longitudeError", metre, fields(3),
                                             "expected error of the position"},
        row_t<&view_t::decodeAltitudeError>{"altitudeError", metre, fields(4),
                                            "expected error of the position"},
        row_t<&view_t::decodeFailedSatId>{"failedSatId", noUnit, fields(5),
                                          "most likely failed satellite"},
        row_t<&view_t::decodeFailedSatProbability>{"failedSatProbability", noUnit, fields(6),
                                                   "probability of missed detection"},
        row_t<&view_t::decodeFailedSatBias>{"failedSatBias", metre, fields(7),
                                            "estimated bias of that satellite"},
        row_t<&view_t::decodeBiasStdDev>{"biasStdDev", metre, fields(8),
                                         "standard deviation of the bias"}};
};

template <>
struct valuesOf_t<kalo::ggaMsg_t> {
    using view_t = kalo::ggaMsg_t;
    static constexpr std::tuple rows{
        row_t<ownTime>{"timeOfDay", noUnit, fields(1), "UTC time of the fix"},
        row_t<&view_t::decodeLatitude, isLatitude>{"latitude", angle, fields(2, 3),
                                                   "north positive"},
        row_t<&view_t::decodeLongitude, isLongitude>{"longitude", angle, fields(4, 5),
                                                     "east positive"},
        row_t<&view_t::decodeQuality>{
            "quality", noUnit, fields(6),
            "0 no fix, 1 GPS, 2 differential, 4 RTK fixed, 5 RTK float, ..."},
        row_t<&view_t::decodeSatCount>{"satCount", noUnit, fields(7), "satellites in use"},
        row_t<&view_t::decodeHdop>{"hdop", noUnit, fields(8), "horizontal dilution of precision"},
        row_t<&view_t::decodeGeoidalHeight>{"altitude", metre, fields(9),
                                            "antenna height above mean sea level"},
        row_t<&view_t::decodeGeoidalSeparation>{"geoidalSeparation", metre, fields(11),
                                                "geoid above the ellipsoid"},
        row_t<&view_t::decodeDiffAge>{"diffAge", second, fields(13),
                                      "age of differential corrections"},
        row_t<&view_t::decodeRefStationId>{"refStationId", noUnit, fields(14),
                                           "number of the differential reference station"}};
};

template <>
struct valuesOf_t<kalo::pzwbGgaMsg_t> : valuesOf_t<kalo::ggaMsg_t> {
    using view_t = kalo::pzwbGgaMsg_t;
};

template <>
struct valuesOf_t<kalo::gllMsg_t> {
    using view_t = kalo::gllMsg_t;
    static constexpr std::tuple rows{
        row_t<&view_t::decodeLatitude, isLatitude>{"latitude", angle, fields(1, 2),
                                                   "north positive"},
        row_t<&view_t::decodeLongitude, isLongitude>{"longitude", angle, fields(3, 4),
                                                     "east positive"},
        row_t<ownTime>{"timeOfDay", noUnit, fields(5), "UTC time of the position"},
        row_t<&view_t::decodeValidity>{"validity", noUnit, fields(6), "A valid, V void"},
        row_t<&view_t::decodeFixMode>{"fixMode", noUnit, fields(7),
                                      "mode: A autonomous, D differential, N not valid, ..."}};
};

template <>
struct valuesOf_t<kalo::gsaMsg_t> {
    using view_t = kalo::gsaMsg_t;
    static constexpr std::tuple rows{
        row_t<&view_t::decodeManualMode>{"manualMode", noUnit, fields(1),
                                         "choice of 2D or 3D: M manual, A automatic"},
        row_t<&view_t::decodeFixMode>{"fixMode", noUnit, fields(2), "1 no fix, 2 2D, 3 3D"},
        row_t<&view_t::decodeSatIds>{"satIds", noUnit, range(3, 14),
                                     "identifiers of the satellites in use"},
        row_t<&view_t::decodePdop>{"pdop", noUnit, fields(15), "position dilution of precision"},
        row_t<&view_t::decodeHdop>{"hdop", noUnit, fields(16), "horizontal dilution of precision"},
        row_t<&view_t::decodeVdop>{"vdop", noUnit, fields(17), "vertical dilution of precision"},
        row_t<&view_t::decodeSignalId>{"signalId", noUnit, fields(18),
                                       "satellite system identifier"}};
};

template <>
struct valuesOf_t<kalo::gstMsg_t> {
    using view_t = kalo::gstMsg_t;
    static constexpr std::tuple rows{
        row_t<ownTime>{"timeOfDay", noUnit, fields(1), "UTC time of the statistics"},
        row_t<&view_t::decodeRangeRms>{"rangeRms", metre, fields(2),
                                       "RMS of the pseudorange residuals"},
        row_t<&view_t::decodeSemiMajor>{"semiMajor", metre, fields(3),
                                        "error ellipse: standard deviation along its longer axis"},
        row_t<&view_t::decodeSemiMinor>{"semiMinor", metre, fields(4),
                                        "error ellipse: standard deviation along its shorter axis"},
        row_t<&view_t::decodeOrientation>{
            "orientation", angle, fields(5),
            "error ellipse: direction of its longer axis, from true north"},
        row_t<&view_t::decodeLatitudeError>{"latitudeError", metre, fields(6),
                                            "standard deviation"},
        row_t<&view_t::decodeLongitudeError>{"longitudeError", metre, fields(7),
                                             "standard deviation"},
        row_t<&view_t::decodeAltitudeError>{"altitudeError", metre, fields(8),
                                            "standard deviation"}};
};

template <>
struct valuesOf_t<kalo::gsvMsg_t> {
    using view_t = kalo::gsvMsg_t;
    /// The field after 0, 1, 2, ... blocks of four fields: 4, 8, 12, ...
    static constexpr fieldSet_t behindBlocks = from(4) & 0x1111111111111111;
    static constexpr std::tuple rows{
        row_t<&view_t::decodeMessageCount>{"messageCount", noUnit, fields(1),
                                           "sentences in the group"},
        row_t<&view_t::decodeMessageNumber>{"messageNumber", noUnit, fields(2),
                                            "number of this sentence in the group"},
        row_t<&view_t::decodeTotalSatCount>{"totalSatCount", noUnit, fields(3),
                                            "satellites in view"},
        row_t<&view_t::decodeSatCount>{"satCount", noUnit, 0, "satellites in this sentence"},
        row_t<satellitesOfSentence>{"satellites", noUnit, from(4),
                                    "prn, elevation and azimuth (deg), snr (dB-Hz) of each"},
        row_t<signalIdOfSentence>{"signalId", noUnit, behindBlocks,
                                  "signal identifier, in the last field", "last"}};
};

template <>
struct valuesOf_t<kalo::hdtMsg_t> {
    using view_t = kalo::hdtMsg_t;
    static constexpr std::tuple rows{
        row_t<&view_t::decodeHeading>{"heading", angle, fields(1), "from true north"}};
};

template <>
struct valuesOf_t<kalo::mwdMsg_t> {
    using view_t = kalo::mwdMsg_t;
    static constexpr std::tuple rows{
        row_t<&view_t::decodeTrueWindDirection>{"trueWindDirection", angle, fields(1),
                                                "from true north"},
        row_t<&view_t::decodeMagneticWindDirection>{"magneticWindDirection", angle, fields(3),
                                                    "from magnetic north"},
        row_t<&view_t::decodeWindSpeed>{"windSpeed", metrePerSecond, range(5, 8),
                                        "of the true wind"}};
};

template <>
struct valuesOf_t<kalo::mwvMsg_t> {
    using view_t = kalo::mwvMsg_t;
    static constexpr std::tuple rows{
        row_t<&view_t::decodeWindDirection>{"windDirection", angle, fields(1),
                                            "relative to what reference names"},
        row_t<&view_t::decodeReference>{"reference", noUnit, fields(2), "R relative, T true"},
        row_t<&view_t::decodeWindSpeed>{"windSpeed", metrePerSecond, fields(3, 4),
                                        "of the wind that reference names"},
        row_t<&view_t::decodeValidity>{"validity", noUnit, fields(5), "A valid, V void"}};
};

template <>
struct valuesOf_t<kalo::rmcMsg_t> {
    using view_t = kalo::rmcMsg_t;
    static constexpr std::tuple rows{
        row_t<ownTime>{"timeOfDay", noUnit, fields(1), "UTC time of the position"},
        row_t<&view_t::decodeValidity>{"validity", noUnit, fields(2), "A valid, V void"},
        row_t<&view_t::decodeLatitude, isLatitude>{"latitude", angle, fields(3, 4),
                                                   "north positive"},
        row_t<&view_t::decodeLongitude, isLongitude>{"longitude", angle, fields(5, 6),
                                                     "east positive"},
        row_t<&view_t::decodeSpeedOverGround>{"speedOverGround", metrePerSecond, fields(7), ""},
        row_t<&view_t::decodeCourseOverGround>{"courseOverGround", angle, fields(8),
                                               "from true north"},
        row_t<ownDate>{"date", noUnit, fields(9), "UTC date"},
        row_t<&view_t::decodeMagneticVariation>{"magneticVariation", angle, fields(10, 11),
                                                "east positive"},
        row_t<&view_t::decodeFixMode>{"fixMode", noUnit, fields(12),
                                      "mode: A autonomous, D differential, N not valid, ..."}};
};

template <>
struct valuesOf_t<kalo::rotMsg_t> {
    using view_t = kalo::rotMsg_t;
    static constexpr std::tuple rows{
        row_t<&view_t::decodeRateOfTurn>{"rateOfTurn", rate, fields(1), "negative to port"},
        row_t<&view_t::decodeValidity>{"validity", noUnit, fields(2), "A valid, V void"}};
};

template <>
struct valuesOf_t<kalo::thsMsg_t> {
    using view_t = kalo::thsMsg_t;
    static constexpr std::tuple rows{
        row_t<&view_t::decodeHeading>{"heading", angle, fields(1), "from true north"},
        row_t<&view_t::decodeValidity>{
            "validity", noUnit, fields(2),
            "A autonomous, E estimated, M manual, S simulator, V not valid"}};
};

template <>
struct valuesOf_t<kalo::vtgMsg_t> {
    using view_t = kalo::vtgMsg_t;
    static constexpr std::tuple rows{
        row_t<&view_t::decodeTrueCourseOverGround>{"trueCourseOverGround", angle, fields(1),
                                                   "from true north"},
        row_t<&view_t::decodeMagneticCourseOverGround>{"magneticCourseOverGround", angle, fields(3),
                                                       "from magnetic north"},
        row_t<&view_t::decodeSpeedOverGround>{"speedOverGround", metrePerSecond, range(5, 8), ""},
        row_t<&view_t::decodeFixMode>{"fixMode", noUnit, fields(9),
                                      "mode: A autonomous, D differential, N not valid, ..."}};
};

template <>
struct valuesOf_t<kalo::zdaMsg_t> {
    using view_t = kalo::zdaMsg_t;
    static constexpr std::tuple rows{
        row_t<ownTime>{"timeOfDay", noUnit, fields(1), "UTC time"},
        row_t<ownDate>{"date", noUnit, fields(2, 3, 4), "UTC date"},
        row_t<&view_t::decodeLocalOffset>{"localOffset", minute, fields(5, 6),
                                          "of the local time zone, sign as sent"}};
};

template <>
struct valuesOf_t<kalo::pzwbGstMsg_t> {
    using view_t = kalo::pzwbGstMsg_t;
    static constexpr std::tuple rows{
        row_t<ownTime>{"timeOfDay", noUnit, fields(1), "UTC time of the statistics"},
        row_t<&view_t::decodeRangeRms>{"rangeRms", metre, fields(2),
                                       "RMS of the pseudorange residuals"},
        row_t<&view_t::decodeSemiMajor>{"semiMajor", metre, fields(3),
                                        "error ellipse: standard deviation along its longer axis"},
        row_t<&view_t::decodeSemiMinor>{"semiMinor", metre, fields(4),
                                        "error ellipse: standard deviation along its shorter axis"},
        row_t<&view_t::decodeOrientation>{
            "orientation", angle, fields(5),
            "error ellipse: direction of its longer axis, from true north"},
        row_t<&view_t::decodeLatitudeError>{"latitudeError", metre, fields(6),
                                            "standard deviation"},
        row_t<&view_t::decodeLongitudeError>{"longitudeError", metre, fields(7),
                                             "standard deviation"},
        row_t<&view_t::decodeAltitudeError>{"altitudeError", metre, fields(8),
                                            "standard deviation"},
        row_t<&view_t::decodeFtest>{"ftest", noUnit, fields(9), "F-test value"}};
};

template <>
struct valuesOf_t<kalo::pzwbMdeMsg_t> {
    using view_t = kalo::pzwbMdeMsg_t;
    static constexpr std::tuple rows{
        row_t<ownTime>{"timeOfDay", noUnit, fields(1), "UTC time"},
        row_t<&view_t::decodePrn>{"prn", noUnit, fields(2), "satellite"},
        row_t<&view_t::decodeMeasType>{"measType", noUnit, fields(3),
                                       "code of the measurement type"},
        row_t<&view_t::decodeNoncentrality>{"noncentrality", noUnit, fields(4),
                                            "non-centrality parameter"},
        row_t<&view_t::decodeMde>{"mde", asSent, fields(5), "marginally detectable error"},
        row_t<&view_t::decodeLatitudeError>{"latitudeError", metre, fields(6), "of the position"},
        row_t<&view_t::decodeLongitudeError>{"longitudeError", metre, fields(7), "of the position"},
        row_t<&view_t::decodeAltitudeError>{"altitudeError", metre, fields(8), "of the position"}};
};

template <>
struct valuesOf_t<kalo::psimLbpMsg_t> {
    using view_t = kalo::psimLbpMsg_t;
    static constexpr std::tuple rows{
        row_t<ownTime>{"timeOfDay", noUnit, fields(1), "UTC time"},
        row_t<&view_t::decodeType>{"objectType", noUnit, fields(3), "Ve vessel, R1 to R4 vehicles"},
        row_t<&view_t::decodeStatus>{"status", noUnit, fields(4), "A valid"},
        row_t<&view_t::decodeCoordType>{"coordType", noUnit, fields(5),
                                        "C or L Cartesian, U or E UTM, R geographic"},
        row_t<&view_t::decodeRawX>{"rawX", asSent, fields(6),
                                   "first coordinate; coordType says which"},
        row_t<&view_t::decodeRawY>{"rawY", asSent, fields(7),
                                   "second coordinate; coordType says which"},
        row_t<companion<view_t, &view_t::coords_t::decodeNorthOffset>>{
            "northOffset", asSent, fields(5, 6, 7), "if coordType is C or L"},
        row_t<companion<view_t, &view_t::coords_t::decodeEastOffset>>{
            "eastOffset", asSent, fields(5, 6, 7), "if coordType is C or L"},
        row_t<companion<view_t, &view_t::coords_t::decodeUtmNorthing>>{
            "utmNorthing", asSent, fields(5, 6, 7), "if coordType is U or E"},
        row_t<companion<view_t, &view_t::coords_t::decodeUtmEasting>>{
            "utmEasting", asSent, fields(5, 6, 7), "if coordType is U or E"},
        row_t<companion<view_t, &view_t::coords_t::decodeLatitude, isInLatitudes>>{
            "latitude", angle, fields(5, 6), "if coordType is R; north positive"},
        row_t<companion<view_t, &view_t::coords_t::decodeLongitude, isInLongitudes>>{
            "longitude", angle, fields(5, 7), "if coordType is R; east positive"},
        row_t<&view_t::decodeDepth>{"depth", asSent, fields(8), "of the object"},
        row_t<&view_t::decodeSemiMajor>{"semiMajor", asSent, fields(9),
                                        "longer axis of the error ellipse"},
        row_t<&view_t::decodeSemiMinor>{"semiMinor", asSent, fields(10),
                                        "shorter axis of the error ellipse"},
        row_t<&view_t::decodeOrientation>{"orientation", angle, fields(11),
                                          "direction of the error ellipse"},
        row_t<&view_t::decodeRangeRms>{"rangeRms", asSent, fields(12), "RMS of the ranges"}};
};

template <>
struct valuesOf_t<kalo::psimSsbMsg_t> {
    using view_t = kalo::psimSsbMsg_t;
    static constexpr std::tuple rows{
        row_t<ownTime>{"timeOfDay", noUnit, fields(1), "UTC time"},
        row_t<&view_t::decodeBeaconId>{"beaconId", noUnit, fields(2), "identifier of the beacon"},
        row_t<&view_t::decodeBeaconNumber>{"beaconNumber", noUnit, fields(2),
                                           "number in the identifier of the beacon"},
        row_t<&view_t::decodeStatus>{"status", noUnit, fields(3), "A valid, V not valid"},
        row_t<&view_t::decodeErrorCode>{"errorCode", noUnit, fields(4), "error code"},
        row_t<&view_t::decodeCoordType>{"coordType", noUnit, fields(5),
                                        "C Cartesian, P polar, U UTM, R geographic"},
        row_t<&view_t::decodeOrientation>{
            "orientation", noUnit, fields(6),
            "of the coordinates: N north, E east, H head of the vessel"},
        row_t<&view_t::decodeFilterCode>{"filterCode", noUnit, fields(7),
                                         "M measured, F filtered, P predicted"},
        row_t<&view_t::decodeRawX>{"rawX", asSent, fields(8),
                                   "first coordinate; coordType and orientation say which"},
        row_t<&view_t::decodeRawY>{"rawY", asSent, fields(9),
                                   "second coordinate; coordType and orientation say which"},
        row_t<companion<view_t, &view_t::coords_t::decodeRange>>{
            "range", asSent, fields(5, 6, 8), "distance to the beacon; coordType P, orientation H"},
        row_t<companion<view_t, &view_t::coords_t::decodeBearing>>{
            "bearing", angle, fields(5, 6, 9),
            "direction to the beacon; coordType P, orientation H"},
        row_t<companion<view_t, &view_t::coords_t::decodeStarboardOffset>>{
            "starboardOffset", asSent, fields(5, 6, 8),
            "along the vessel's axes; coordType C, orientation H"},
        row_t<companion<view_t, &view_t::coords_t::decodeForwardOffset>>{
            "forwardOffset", asSent, fields(5, 6, 9),
            "along the vessel's axes; coordType C, orientation H"},
        row_t<companion<view_t, &view_t::coords_t::decodeNorthOffset>>{
            "northOffset", asSent, fields(5, 6, 8, 9), "coordType C, orientation N or E"},
        row_t<companion<view_t, &view_t::coords_t::decodeEastOffset>>{
            "eastOffset", asSent, fields(5, 6, 8, 9), "coordType C, orientation N or E"},
        row_t<companion<view_t, &view_t::coords_t::decodeUtmNorthing>>{
            "utmNorthing", asSent, fields(5, 6, 8, 9), "coordType U, orientation N or E"},
        row_t<companion<view_t, &view_t::coords_t::decodeUtmEasting>>{
            "utmEasting", asSent, fields(5, 6, 8, 9), "coordType U, orientation N or E"},
        row_t<companion<view_t, &view_t::coords_t::decodeLatitude, isInLatitudes>>{
            "latitude", angle, fields(5, 6, 8), "north positive; coordType R, orientation N"},
        row_t<companion<view_t, &view_t::coords_t::decodeLongitude, isInLongitudes>>{
            "longitude", angle, fields(5, 6, 9), "east positive; coordType R, orientation N"},
        row_t<&view_t::decodeDepth>{"depth", asSent, fields(10), "of the beacon"},
        row_t<&view_t::decodeExpectedAccuracy>{"expectedAccuracy", asSent, fields(11),
                                               "of the position"},
        row_t<&view_t::decodeAddInfoType>{
            "addInfoType", noUnit, fields(12),
            "additional values: N none, T time, D depth, C compass, I inclinometer"},
        row_t<&view_t::decodeRawAddInfo1>{"rawAddInfo1", asSent, fields(13),
                                          "first additional value"},
        row_t<&view_t::decodeRawAddInfo2>{"rawAddInfo2", asSent, fields(14),
                                          "second additional value"},
        row_t<companion<view_t, &view_t::addInfo_t::decodeRoll>>{"roll", angle, fields(12, 13),
                                                                 "if addInfoType is I"},
        row_t<companion<view_t, &view_t::addInfo_t::decodePitch>>{"pitch", angle, fields(12, 14),
                                                                  "if addInfoType is I"},
        row_t<companion<view_t, &view_t::addInfo_t::decodeRangeTime>>{
            "rangeTime", asSent, fields(12, 13), "if addInfoType is T"},
        row_t<companion<view_t, &view_t::addInfo_t::decodeDepth>>{
            "addInfoDepth", asSent, fields(12, 13), "by a depth sensor; addInfoType D"}};
};

template <>
struct valuesOf_t<kalo::ptpsrMsg_t> {
    using view_t = kalo::ptpsrMsg_t;
    static constexpr std::tuple rows{
        row_t<&view_t::decodeSentenceFormatter>{"sentenceFormatter", noUnit, fields(1),
                                                "name, as sent"},
        row_t<ownTime>{"timeOfDay", noUnit, fields(2), "UTC time"},
        row_t<&view_t::decodeAttitudeAvailability>{"attitudeAvailability", noUnit, fields(3),
                                                   "letter, as sent"},
        row_t<&view_t::decodePOSAntennaPositionType>{"pOSAntennaPositionType", noUnit, fields(4),
                                                     "letter, as sent"},
        row_t<&view_t::decodeHeading>{"heading", asSent, fields(5),
                                      "of the line between the antennas"},
        row_t<&view_t::decodeInclination>{"inclination", asSent, fields(6),
                                          "of the line between the antennas"},
        row_t<&view_t::decodeSlopeDistance>{"slopeDistance", asSent, fields(7),
                                            "between the antennas"},
        row_t<&view_t::decodeHeadingRMS>{"headingRMS", asSent, fields(8),
                                         "accuracy of the heading"},
        row_t<&view_t::decodeInclinationRMS>{"inclinationRMS", angle, fields(9),
                                             "accuracy of the inclination"},
        row_t<&view_t::decodeAzimuthOffset>{"azimuthOffset", angle, fields(10), ""},
        row_t<&view_t::decodeNumGPSSatellites>{"numGPSSatellites", noUnit, fields(11),
                                               "satellites in use"},
        row_t<&view_t::decodeNumGLONASSSatellites>{"numGLONASSSatellites", noUnit, fields(12),
                                                   "satellites in use"},
        row_t<&view_t::decodeNumBeiDouSatellites>{"numBeiDouSatellites", noUnit, fields(13),
                                                  "satellites in use"},
        row_t<&view_t::decodeNumGalileoSatellites>{"numGalileoSatellites", noUnit, fields(14),
                                                   "satellites in use"},
        row_t<&view_t::decodeNumOtherSatellites>{"numOtherSatellites", noUnit, fields(15),
                                                 "satellites in use"}};
};
