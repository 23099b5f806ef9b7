#include "tools/recordTable.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "kalo/kalo.h"

namespace {

using namespace kalo;

constexpr unit_t none{"", nullptr};
constexpr unit_t metre{"m", nullptr};
constexpr unit_t second{"s", nullptr};
constexpr unit_t minute{"min", nullptr};
constexpr unit_t metrePerSecond{"m/s", nullptr};
constexpr unit_t metrePerSecondSquared{"m/s2", nullptr};
constexpr unit_t asSent{"as sent", nullptr};
constexpr unit_t degreesAsSent{"deg", nullptr};
constexpr unit_t bitPerSecond{"bit/s", nullptr};
constexpr unit_t angle{"deg", "rad"};
constexpr unit_t rate{"deg/s", "rad/s"};

constexpr unsigned fieldBits = 64;

template <typename... Index>
constexpr fieldSet_t fields(Index... index) {
    return ((fieldSet_t{1} << index) | ...);
}

constexpr fieldSet_t from(unsigned first) { return ~fieldSet_t{0} << first; }

constexpr fieldSet_t range(unsigned first, unsigned last) { return from(first) & ~from(last + 1); }

value_t valueOf(unsigned short number) { return unsigned{number}; }

template <typename T>
value_t valueOf(T value) {
    return value;
}

template <typename View, typename T>
View viewOf(bool (View::*)(T&) const);

template <typename View, typename T>
T outputOf(bool (View::*)(T&) const);

// The reader of a plain accessor of a sentence's view.
template <auto accessor>
value_t plain(const source_t& source) {
    using view_t = decltype(viewOf(accessor));
    decltype(outputOf(accessor)) out{};
    if (!(static_cast<const view_t&>(*source.sentence).*accessor)(out)) {
        return undecoded_t();
    }
    return valueOf(std::move(out));
}

// The reader of an accessor of a companion, which gives the raw values of its view a meaning. Those
// are values themselves, so nothing is lost where they have no such meaning.
template <typename View, auto accessor>
value_t companion(const source_t& source) {
    using companion_t = decltype(viewOf(accessor));
    decltype(outputOf(accessor)) out{};
    if (!(companion_t(static_cast<const View&>(*source.sentence)).*accessor)(out)) {
        return absent_t();
    }
    return valueOf(out);
}

value_t timeOfDay(const source_t& source) {
    sentTime_t time;
    if (!readTimeOfDay(*source.sentence, time)) {
        return undecoded_t();
    }
    return time;
}

satellite_t satelliteOf(const gsvMsg_t& view, unsigned block) {
    satellite_t satellite;
    satellite.hasPrn = view.decodeSatPrn(block, satellite.prn);
    satellite.hasElevation = view.decodeSatElevation(block, satellite.elevation);
    satellite.hasAzimuth = view.decodeSatAzimuth(block, satellite.azimuth);
    satellite.hasSnr = view.decodeSatSnr(block, satellite.snr);
    const bool decoded[] = {satellite.hasPrn, satellite.hasElevation, satellite.hasAzimuth,
                            satellite.hasSnr};
    for (unsigned i = 0; i < std::size(decoded); ++i) {
        const bool sent = !view.field(4 + block * 4 + i)->isEmpty();
        satellite.lost = satellite.lost || (sent && !decoded[i]);
    }
    return satellite;
}

value_t satellitesOfSentence(const source_t& source) {
    const gsvMsg_t& view = static_cast<const gsvMsg_t&>(*source.sentence);
    unsigned count = 0;
    if (!view.decodeSatCount(count)) {
        return undecoded_t();
    }
    std::vector<satellite_t> satellites;
    for (unsigned i = 0; i < count; ++i) {
        satellites.push_back(satelliteOf(view, i));
    }
    return satellites;
}

// The last field, in a sentence that has one for it.
value_t signalIdOfSentence(const source_t& source) {
    const gsvMsg_t& view = static_cast<const gsvMsg_t&>(*source.sentence);
    if (view.fieldCount() % 4 != 1 || view.field(view.fieldCount() - 1)->isEmpty()) {
        return absent_t();
    }
    return plain<&gsvMsg_t::decodeSignalId>(source);
}

value_t satellitesOfSet(const source_t& source) { return source.satellites->satellites; }

value_t signalIdOfSet(const source_t& source) {
    if (!source.satellites->hasSignalId) {
        return absent_t();
    }
    return source.satellites->signalId;
}

// The reader of a getter of a motion record.
template <auto getter>
value_t motion(const source_t& source) {
    double out = 0;
    if (!(source.motion->*getter)(out)) {
        return undecoded_t();
    }
    return out;
}

// The status as the letter that stands for it.
value_t motionStatus(const source_t& source) {
    constexpr std::size_t statusColumn = 13;
    tss1Msg_t::status_t status{};
    if (!source.motion->getStatus(status)) {
        return undecoded_t();
    }
    return source.text[statusColumn];
}

// The reader of an accessor of a tracking record.
template <auto accessor>
value_t tracking(const source_t& source) {
    decltype(outputOf(accessor)) out{};
    if (!(source.tracking->*accessor)(out)) {
        return undecoded_t();
    }
    return valueOf(std::move(out));
}

value_t trackingTime(const source_t& source) {
    sentTime_t time;
    if (!readTimeOfDay(*source.tracking, time)) {
        return undecoded_t();
    }
    return time;
}

// Fields of a record of a sourcetable.
template <unsigned index>
value_t tableText(const source_t& source) {
    const std::string* text = source.table->fieldAt(index);
    if (text == nullptr) {
        return absent_t();
    }
    return *text;
}

// The last field of the standard, with all that the record has behind it.
template <unsigned index>
value_t tableRest(const source_t& source) {
    std::string rest;
    for (unsigned i = index; i < source.table->fieldCount(); ++i) {
        const std::string* text = source.table->fieldAt(i);
        rest += (i > index ? ";" : "") + (text == nullptr ? std::string() : *text);
    }
    return rest;
}

template <unsigned index, typename Number>
value_t tableNumber(const source_t& source) {
    Number number = 0;
    if (!source.table->decodeField(index, number)) {
        return undecoded_t();
    }
    return number;
}

template <unsigned index, bool (ntripRecordDecoder_t::*decoder)(unsigned, bool&) const>
value_t tableFlag(const source_t& source) {
    const ntripRecordDecoder_t& record = *source.table;
    bool flag = false;
    if (!(record.*decoder)(index, flag)) {
        return undecoded_t();
    }
    return flag;
}

// An enumeration as the word that the library prints for it.
template <typename Enumeration>
std::string wordOf(Enumeration value) {
    char word[16];
    bufferStream_t stream(word, sizeof word);
    stream << value;
    return {word, stream.written()};
}

template <auto accessor>
value_t tableWord(const source_t& source) {
    decltype(outputOf(accessor)) value{};
    if (!(source.table->*accessor)(value)) {
        return undecoded_t();
    }
    return wordOf(value);
}

// A network has the authentication of a stream at another place.
value_t networkAuth(const source_t& source) {
    constexpr unsigned index = 3;
    const std::string* text = source.table->fieldAt(index);
    const std::string letter = text == nullptr ? "" : *text;
    if (letter == "N") {
        return wordOf(authNone);
    }
    if (letter == "B") {
        return wordOf(authBasic);
    }
    return letter == "D" ? value_t(wordOf(authDigest)) : undecoded_t();
}

value_t wholeText(const source_t& source) { return std::string(source.text); }

using ssb_t = psimSsbMsg_t;
using ssbCoords_t = psimSsbMsg_t::coords_t;
using ssbAddInfo_t = psimSsbMsg_t::addInfo_t;
using lbp_t = psimLbpMsg_t;
using lbpCoords_t = psimLbpMsg_t::coords_t;

constexpr valueRow_t dbtRows[] = {
    {"depth", metre, range(1, 6), "below the transducer", plain<&dbtMsg_t::decodeDepth>},
};

constexpr valueRow_t dptRows[] = {
    {"depth", metre, fields(1), "below the transducer", plain<&dptMsg_t::decodeDepth>},
};

constexpr valueRow_t dtmRows[] = {
    {"localDatum", none, fields(1), "code", plain<&dtmMsg_t::decodeLocalDatum>},
    {"localDatumSubdivision", none, fields(2), "code",
     plain<&dtmMsg_t::decodeLocalDatumSubdivision>},
    {"latitudeOffset", angle, fields(3, 4), "north positive",
     plain<&dtmMsg_t::decodeLatitudeOffset>},
    {"longitudeOffset", angle, fields(5, 6), "east positive",
     plain<&dtmMsg_t::decodeLongitudeOffset>},
    {"altitudeOffset", metre, fields(7), "", plain<&dtmMsg_t::decodeAltitudeOffset>},
    {"referenceDatum", none, fields(8), "code", plain<&dtmMsg_t::decodeReferenceDatum>},
};

constexpr valueRow_t gbsRows[] = {
    {"timeOfDay", none, fields(1), "UTC time of the fix", timeOfDay},
    {"latitudeError", metre, fields(2), "expected error", plain<&gbsMsg_t::decodeLatitudeError>},
    {"longitudeError", metre, fields(3), "expected error", plain<&gbsMsg_t::decodeLongitudeError>},
    {"altitudeError", metre, fields(4), "expected error", plain<&gbsMsg_t::decodeAltitudeError>},
    {"failedSatId", none, fields(5), "most likely failed satellite",
     plain<&gbsMsg_t::decodeFailedSatId>},
    {"failedSatProbability", none, fields(6), "probability of missed detection",
     plain<&gbsMsg_t::decodeFailedSatProbability>},
    {"failedSatBias", metre, fields(7), "estimated bias of that satellite",
     plain<&gbsMsg_t::decodeFailedSatBias>},
    {"biasStdDev", metre, fields(8), "standard deviation of the bias",
     plain<&gbsMsg_t::decodeBiasStdDev>},
};

constexpr valueRow_t ggaRows[] = {
    {"timeOfDay", none, fields(1), "UTC time of the fix", timeOfDay},
    {"latitude", angle, fields(2, 3), "north positive", plain<&ggaMsg_t::decodeLatitude>},
    {"longitude", angle, fields(4, 5), "east positive", plain<&ggaMsg_t::decodeLongitude>},
    {"quality", none, fields(6), "fix quality indicator", plain<&ggaMsg_t::decodeQuality>},
    {"satCount", none, fields(7), "satellites in use", plain<&ggaMsg_t::decodeSatCount>},
    {"hdop", none, fields(8), "horizontal dilution of precision", plain<&ggaMsg_t::decodeHdop>},
    {"altitude", metre, fields(9), "antenna height above mean sea level",
     plain<&ggaMsg_t::decodeGeoidalHeight>},
    {"geoidalSeparation", metre, fields(11), "geoid above the ellipsoid",
     plain<&ggaMsg_t::decodeGeoidalSeparation>},
    {"diffAge", second, fields(13), "age of differential corrections",
     plain<&ggaMsg_t::decodeDiffAge>},
    {"refStationId", none, fields(14), "differential reference station",
     plain<&ggaMsg_t::decodeRefStationId>},
};

constexpr valueRow_t gllRows[] = {
    {"latitude", angle, fields(1, 2), "north positive", plain<&gllMsg_t::decodeLatitude>},
    {"longitude", angle, fields(3, 4), "east positive", plain<&gllMsg_t::decodeLongitude>},
    {"timeOfDay", none, fields(5), "UTC time of the position", timeOfDay},
    {"validity", none, fields(6), "status letter", plain<&gllMsg_t::decodeValidity>},
    {"fixMode", none, fields(7), "mode letter", plain<&gllMsg_t::decodeFixMode>},
};

constexpr valueRow_t gsaRows[] = {
    {"manualMode", none, fields(1), "selection mode letter", plain<&gsaMsg_t::decodeManualMode>},
    {"fixMode", none, fields(2), "fix type: 1 none, 2 2D, 3 3D", plain<&gsaMsg_t::decodeFixMode>},
    {"satIds", none, range(3, 14), "satellites used", plain<&gsaMsg_t::decodeSatIds>},
    {"pdop", none, fields(15), "position dilution of precision", plain<&gsaMsg_t::decodePdop>},
    {"hdop", none, fields(16), "horizontal dilution of precision", plain<&gsaMsg_t::decodeHdop>},
    {"vdop", none, fields(17), "vertical dilution of precision", plain<&gsaMsg_t::decodeVdop>},
    {"signalId", none, fields(18), "satellite system", plain<&gsaMsg_t::decodeSignalId>},
};

constexpr valueRow_t gstRows[] = {
    {"timeOfDay", none, fields(1), "UTC time of the statistics", timeOfDay},
    {"rangeRms", metre, fields(2), "RMS of the pseudorange residuals",
     plain<&gstMsg_t::decodeRangeRms>},
    {"semiMajor", metre, fields(3), "standard deviation along the axis",
     plain<&gstMsg_t::decodeSemiMajor>},
    {"semiMinor", metre, fields(4), "standard deviation along the axis",
     plain<&gstMsg_t::decodeSemiMinor>},
    {"orientation", angle, fields(5), "of the semi-major axis, from true north",
     plain<&gstMsg_t::decodeOrientation>},
    {"latitudeError", metre, fields(6), "standard deviation",
     plain<&gstMsg_t::decodeLatitudeError>},
    {"longitudeError", metre, fields(7), "standard deviation",
     plain<&gstMsg_t::decodeLongitudeError>},
    {"altitudeError", metre, fields(8), "standard deviation",
     plain<&gstMsg_t::decodeAltitudeError>},
};

constexpr valueRow_t gsvRows[] = {
    {"messageCount", none, fields(1), "sentences in the group",
     plain<&gsvMsg_t::decodeMessageCount>},
    {"messageNumber", none, fields(2), "number of this sentence",
     plain<&gsvMsg_t::decodeMessageNumber>},
    {"totalSatCount", none, fields(3), "satellites in view", plain<&gsvMsg_t::decodeTotalSatCount>},
    {"satCount", none, 0, "satellites in this sentence", plain<&gsvMsg_t::decodeSatCount>},
    {"satellites", none, from(4), "prn, elevation and azimuth (deg), snr (dB-Hz) of each",
     satellitesOfSentence},
    {"signalId", none, from(4), "signal, in the last field", signalIdOfSentence},
};

constexpr valueRow_t hdtRows[] = {
    {"heading", angle, fields(1), "from true north", plain<&hdtMsg_t::decodeHeading>},
};

constexpr valueRow_t mwdRows[] = {
    {"trueWindDirection", angle, fields(1), "from true north",
     plain<&mwdMsg_t::decodeTrueWindDirection>},
    {"magneticWindDirection", angle, fields(3), "from magnetic north",
     plain<&mwdMsg_t::decodeMagneticWindDirection>},
    {"windSpeed", metrePerSecond, range(5, 8), "", plain<&mwdMsg_t::decodeWindSpeed>},
};

constexpr valueRow_t mwvRows[] = {
    {"windDirection", angle, fields(1), "relative to what the reference says",
     plain<&mwvMsg_t::decodeWindDirection>},
    {"reference", none, fields(2), "reference letter", plain<&mwvMsg_t::decodeReference>},
    {"windSpeed", metrePerSecond, fields(3, 4), "", plain<&mwvMsg_t::decodeWindSpeed>},
    {"validity", none, fields(5), "status letter", plain<&mwvMsg_t::decodeValidity>},
};

constexpr valueRow_t rmcRows[] = {
    {"timeOfDay", none, fields(1), "UTC time of the position", timeOfDay},
    {"validity", none, fields(2), "status letter", plain<&rmcMsg_t::decodeValidity>},
    {"latitude", angle, fields(3, 4), "north positive", plain<&rmcMsg_t::decodeLatitude>},
    {"longitude", angle, fields(5, 6), "east positive", plain<&rmcMsg_t::decodeLongitude>},
    {"speedOverGround", metrePerSecond, fields(7), "", plain<&rmcMsg_t::decodeSpeedOverGround>},
    {"courseOverGround", angle, fields(8), "from true north",
     plain<&rmcMsg_t::decodeCourseOverGround>},
    {"date", none, fields(9), "UTC date", plain<&rmcMsg_t::decodeDate>},
    {"magneticVariation", angle, fields(10, 11), "east positive",
     plain<&rmcMsg_t::decodeMagneticVariation>},
    {"fixMode", none, fields(12), "mode letter", plain<&rmcMsg_t::decodeFixMode>},
};

constexpr valueRow_t rotRows[] = {
    {"rateOfTurn", rate, fields(1), "negative to port", plain<&rotMsg_t::decodeRateOfTurn>},
    {"validity", none, fields(2), "status letter", plain<&rotMsg_t::decodeValidity>},
};

constexpr valueRow_t thsRows[] = {
    {"heading", angle, fields(1), "from true north", plain<&thsMsg_t::decodeHeading>},
    {"validity", none, fields(2), "mode letter", plain<&thsMsg_t::decodeValidity>},
};

constexpr valueRow_t vtgRows[] = {
    {"trueCourseOverGround", angle, fields(1), "from true north",
     plain<&vtgMsg_t::decodeTrueCourseOverGround>},
    {"magneticCourseOverGround", angle, fields(3), "from magnetic north",
     plain<&vtgMsg_t::decodeMagneticCourseOverGround>},
    {"speedOverGround", metrePerSecond, range(5, 8), "", plain<&vtgMsg_t::decodeSpeedOverGround>},
    {"fixMode", none, fields(9), "mode letter", plain<&vtgMsg_t::decodeFixMode>},
};

constexpr valueRow_t zdaRows[] = {
    {"timeOfDay", none, fields(1), "UTC time", timeOfDay},
    {"date", none, fields(2, 3, 4), "UTC date", plain<&zdaMsg_t::decodeDate>},
    {"localOffset", minute, fields(5, 6), "of the local zone, as sent",
     plain<&zdaMsg_t::decodeLocalOffset>},
};

constexpr valueRow_t pzwbGstRows[] = {
    {"timeOfDay", none, fields(1), "UTC time of the statistics", timeOfDay},
    {"rangeRms", metre, fields(2), "RMS of the pseudorange residuals",
     plain<&pzwbGstMsg_t::decodeRangeRms>},
    {"semiMajor", metre, fields(3), "standard deviation along the axis",
     plain<&pzwbGstMsg_t::decodeSemiMajor>},
    {"semiMinor", metre, fields(4), "standard deviation along the axis",
     plain<&pzwbGstMsg_t::decodeSemiMinor>},
    {"orientation", angle, fields(5), "of the semi-major axis, from true north",
     plain<&pzwbGstMsg_t::decodeOrientation>},
    {"latitudeError", metre, fields(6), "standard deviation",
     plain<&pzwbGstMsg_t::decodeLatitudeError>},
    {"longitudeError", metre, fields(7), "standard deviation",
     plain<&pzwbGstMsg_t::decodeLongitudeError>},
    {"altitudeError", metre, fields(8), "standard deviation",
     plain<&pzwbGstMsg_t::decodeAltitudeError>},
    {"ftest", none, fields(9), "F-test value", plain<&pzwbGstMsg_t::decodeFtest>},
};

constexpr valueRow_t pzwbMdeRows[] = {
    {"timeOfDay", none, fields(1), "UTC time", timeOfDay},
    {"prn", none, fields(2), "satellite", plain<&pzwbMdeMsg_t::decodePrn>},
    {"measType", none, fields(3), "code of the measurement type",
     plain<&pzwbMdeMsg_t::decodeMeasType>},
    {"noncentrality", none, fields(4), "non-centrality parameter",
     plain<&pzwbMdeMsg_t::decodeNoncentrality>},
    {"mde", asSent, fields(5), "marginally detectable error", plain<&pzwbMdeMsg_t::decodeMde>},
    {"latitudeError", metre, fields(6), "", plain<&pzwbMdeMsg_t::decodeLatitudeError>},
    {"longitudeError", metre, fields(7), "", plain<&pzwbMdeMsg_t::decodeLongitudeError>},
    {"altitudeError", metre, fields(8), "", plain<&pzwbMdeMsg_t::decodeAltitudeError>},
};

constexpr valueRow_t psimLbpRows[] = {
    {"timeOfDay", none, fields(1), "UTC time", timeOfDay},
    {"objectType", none, fields(3), "Ve vessel, R1 to R4 vehicles", plain<&lbp_t::decodeType>},
    {"status", none, fields(4), "status", plain<&lbp_t::decodeStatus>},
    {"coordType", none, fields(5), "letter", plain<&lbp_t::decodeCoordType>},
    {"rawX", asSent, fields(6), "first coordinate", plain<&lbp_t::decodeRawX>},
    {"rawY", asSent, fields(7), "second coordinate", plain<&lbp_t::decodeRawY>},
    {"northOffset", asSent, fields(6, 7), "", companion<lbp_t, &lbpCoords_t::decodeNorthOffset>},
    {"eastOffset", asSent, fields(6, 7), "", companion<lbp_t, &lbpCoords_t::decodeEastOffset>},
    {"utmNorthing", asSent, fields(6, 7), "", companion<lbp_t, &lbpCoords_t::decodeUtmNorthing>},
    {"utmEasting", asSent, fields(6, 7), "", companion<lbp_t, &lbpCoords_t::decodeUtmEasting>},
    {"latitude", angle, fields(6), "north positive",
     companion<lbp_t, &lbpCoords_t::decodeLatitude>},
    {"longitude", angle, fields(7), "east positive",
     companion<lbp_t, &lbpCoords_t::decodeLongitude>},
    {"depth", asSent, fields(8), "", plain<&lbp_t::decodeDepth>},
    {"semiMajor", asSent, fields(9), "axis of the error ellipse", plain<&lbp_t::decodeSemiMajor>},
    {"semiMinor", asSent, fields(10), "axis of the error ellipse", plain<&lbp_t::decodeSemiMinor>},
    {"orientation", angle, fields(11), "of the error ellipse", plain<&lbp_t::decodeOrientation>},
    {"rangeRms", asSent, fields(12), "", plain<&lbp_t::decodeRangeRms>},
};

constexpr valueRow_t psimSsbRows[] = {
    {"timeOfDay", none, fields(1), "UTC time", timeOfDay},
    {"beaconId", none, fields(2), "beacon", plain<&ssb_t::decodeBeaconId>},
    {"beaconNumber", none, fields(2), "number in its identifier",
     plain<&ssb_t::decodeBeaconNumber>},
    {"status", none, fields(3), "letter: A valid, V invalid", plain<&ssb_t::decodeStatus>},
    {"errorCode", none, fields(4), "error code", plain<&ssb_t::decodeErrorCode>},
    {"coordType", none, fields(5), "letter: C, P, U, R", plain<&ssb_t::decodeCoordType>},
    {"orientation", none, fields(6), "letter: N, E, H", plain<&ssb_t::decodeOrientation>},
    {"filterCode", none, fields(7), "letter: M, F, P", plain<&ssb_t::decodeFilterCode>},
    {"rawX", asSent, fields(8), "first coordinate", plain<&ssb_t::decodeRawX>},
    {"rawY", asSent, fields(9), "second coordinate", plain<&ssb_t::decodeRawY>},
    {"range", asSent, fields(8), "polar", companion<ssb_t, &ssbCoords_t::decodeRange>},
    {"bearing", angle, fields(9), "polar", companion<ssb_t, &ssbCoords_t::decodeBearing>},
    {"starboardOffset", asSent, fields(8), "",
     companion<ssb_t, &ssbCoords_t::decodeStarboardOffset>},
    {"forwardOffset", asSent, fields(9), "", companion<ssb_t, &ssbCoords_t::decodeForwardOffset>},
    {"northOffset", asSent, fields(8, 9), "", companion<ssb_t, &ssbCoords_t::decodeNorthOffset>},
    {"eastOffset", asSent, fields(8, 9), "", companion<ssb_t, &ssbCoords_t::decodeEastOffset>},
    {"utmNorthing", asSent, fields(8, 9), "", companion<ssb_t, &ssbCoords_t::decodeUtmNorthing>},
    {"utmEasting", asSent, fields(8, 9), "", companion<ssb_t, &ssbCoords_t::decodeUtmEasting>},
    {"latitude", angle, fields(8), "north positive",
     companion<ssb_t, &ssbCoords_t::decodeLatitude>},
    {"longitude", angle, fields(9), "east positive",
     companion<ssb_t, &ssbCoords_t::decodeLongitude>},
    {"depth", asSent, fields(10), "", plain<&ssb_t::decodeDepth>},
    {"expectedAccuracy", asSent, fields(11), "", plain<&ssb_t::decodeExpectedAccuracy>},
    {"addInfoType", none, fields(12), "letter: N, T, D, C, I", plain<&ssb_t::decodeAddInfoType>},
    {"rawAddInfo1", asSent, fields(13), "first additional value", plain<&ssb_t::decodeRawAddInfo1>},
    {"rawAddInfo2", asSent, fields(14), "second additional value",
     plain<&ssb_t::decodeRawAddInfo2>},
    {"roll", angle, fields(13), "by inclinometer", companion<ssb_t, &ssbAddInfo_t::decodeRoll>},
    {"pitch", angle, fields(14), "by inclinometer", companion<ssb_t, &ssbAddInfo_t::decodePitch>},
    {"rangeTime", asSent, fields(13), "", companion<ssb_t, &ssbAddInfo_t::decodeRangeTime>},
    {"addInfoDepth", asSent, fields(13), "by depth sensor",
     companion<ssb_t, &ssbAddInfo_t::decodeDepth>},
};

constexpr valueRow_t ptpsrRows[] = {
    {"sentenceFormatter", none, fields(1), "sub-sentence code",
     plain<&ptpsrMsg_t::decodeSentenceFormatter>},
    {"timeOfDay", none, fields(2), "UTC time", timeOfDay},
    {"attitudeAvailability", none, fields(3), "letter",
     plain<&ptpsrMsg_t::decodeAttitudeAvailability>},
    {"pOSAntennaPositionType", none, fields(4), "letter",
     plain<&ptpsrMsg_t::decodePOSAntennaPositionType>},
    {"heading", asSent, fields(5), "", plain<&ptpsrMsg_t::decodeHeading>},
    {"inclination", asSent, fields(6), "", plain<&ptpsrMsg_t::decodeInclination>},
    {"slopeDistance", asSent, fields(7), "between the antennas",
     plain<&ptpsrMsg_t::decodeSlopeDistance>},
    {"headingRMS", asSent, fields(8), "", plain<&ptpsrMsg_t::decodeHeadingRMS>},
    {"inclinationRMS", angle, fields(9), "", plain<&ptpsrMsg_t::decodeInclinationRMS>},
    {"azimuthOffset", angle, fields(10), "", plain<&ptpsrMsg_t::decodeAzimuthOffset>},
    {"numGPSSatellites", none, fields(11), "used", plain<&ptpsrMsg_t::decodeNumGPSSatellites>},
    {"numGLONASSSatellites", none, fields(12), "used",
     plain<&ptpsrMsg_t::decodeNumGLONASSSatellites>},
    {"numBeiDouSatellites", none, fields(13), "used",
     plain<&ptpsrMsg_t::decodeNumBeiDouSatellites>},
    {"numGalileoSatellites", none, fields(14), "used",
     plain<&ptpsrMsg_t::decodeNumGalileoSatellites>},
    {"numOtherSatellites", none, fields(15), "used", plain<&ptpsrMsg_t::decodeNumOtherSatellites>},
};

constexpr valueRow_t satellitesRows[] = {
    {"signalId", none, 0, "signal, where the sentences carry it", signalIdOfSet},
    {"satellites", none, 0, "prn, elevation and azimuth (deg), snr (dB-Hz) of each",
     satellitesOfSet},
};

constexpr valueRow_t motionRows[] = {
    {"roll", angle, 0, "", motion<&tss1Msg_t::getRoll>, "col 14-18"},
    {"pitch", angle, 0, "", motion<&tss1Msg_t::getPitch>, "col 20-24"},
    {"heave", metre, 0, "", motion<&tss1Msg_t::getHeave>, "col 8-12"},
    {"horizontalAcceleration", metrePerSecondSquared, 0, "",
     motion<&tss1Msg_t::getHorizontalAcceleration>, "col 1,2"},
    {"verticalAcceleration", metrePerSecondSquared, 0, "",
     motion<&tss1Msg_t::getVerticalAcceleration>, "col 3-6"},
    {"status", none, 0, "letter: U, G, H, F stable, u, g, h, f not", motionStatus, "col 13"},
};

using ats_t = atsAsciiMsg_t;

constexpr valueRow_t trackingRows[] = {
    {"timeOfDay", none, fields(3), "UTC time", trackingTime, "token 4"},
    {"date", none, fields(0, 1, 2), "UTC date", tracking<&ats_t::decodeDate>, "token 1-3"},
    {"beaconId", none, fields(4), "beacon", tracking<&ats_t::decodeBeaconId>, "B"},
    {"beaconNumber", none, fields(4), "beacon", tracking<&ats_t::decodeBeaconNumber>, "B"},
    {"beaconX", asSent, fields(5), "", tracking<&ats_t::decodeBeaconX>, "X"},
    {"beaconY", asSent, fields(6), "", tracking<&ats_t::decodeBeaconY>, "Y"},
    {"beaconDepth", asSent, fields(7), "", tracking<&ats_t::decodeBeaconDepth>, "D"},
    {"vesselPitch", angle, fields(8), "", tracking<&ats_t::decodeVesselPitch>, "P"},
    {"vesselRoll", angle, fields(9), "", tracking<&ats_t::decodeVesselRoll>, "R"},
    {"vesselHeading", angle, fields(10), "", tracking<&ats_t::decodeVesselHeading>, "H"},
    {"errorCode", none, fields(11), "", tracking<&ats_t::decodeErrorCode>, "E"},
    {"anglePitchTelemetry", angle, fields(12), "", tracking<&ats_t::decodeAnglePitchTelemetry>,
     "AP"},
    {"angleRollTelemetry", angle, fields(13), "", tracking<&ats_t::decodeAngleRollTelemetry>, "AR"},
    {"currentFlowSpeed", asSent, fields(14), "", tracking<&ats_t::decodeCurrentFlowSpeed>, "CS"},
    {"currentFlowDirection", angle, fields(15), "", tracking<&ats_t::decodeCurrentFlowDirection>,
     "CD"},
    {"vesselPositionX", asSent, fields(16), "", tracking<&ats_t::decodeVesselPositionX>, "SX"},
    {"vesselPositionY", asSent, fields(17), "", tracking<&ats_t::decodeVesselPositionY>, "SY"},
    {"vesselPositionHdop", none, fields(18), "", tracking<&ats_t::decodeVesselPositionHdop>, "SH"},
    {"vesselPositionQuality", none, fields(19), "", tracking<&ats_t::decodeVesselPositionQuality>,
     "SQ"},
};

using table_t = ntripRecordDecoder_t;

constexpr valueRow_t streamRows[] = {
    {"mountpoint", none, fields(1), "", tableText<1>},
    {"identifier", none, fields(2), "place", tableText<2>},
    {"format", none, fields(3), "of the data", tableText<3>},
    {"formatDetails", none, fields(4), "", tableText<4>},
    {"carrierType", none, fields(5), "None, L1 or L1L2",
     tableWord<&ntripStreamDecoder_t::decodeCarrierType>},
    {"navSystem", none, fields(6), "satellite systems", tableText<6>},
    {"network", none, fields(7), "", tableText<7>},
    {"country", none, fields(8), "", tableText<8>},
    {"latitude", degreesAsSent, fields(9), "north positive", tableNumber<9, float>},
    {"longitude", degreesAsSent, fields(10), "east positive", tableNumber<10, float>},
    {"nmea", none, fields(11), "whether the caster wants a position",
     tableFlag<11, &table_t::decodeOneZero>},
    {"solutionType", none, fields(12), "Single or Network",
     tableWord<&ntripStreamDecoder_t::decodeSolutionType>},
    {"generator", none, fields(13), "", tableText<13>},
    {"compression", none, fields(14), "compression or encryption", tableText<14>},
    {"authType", none, fields(15), "None, Basic or Digest",
     tableWord<&ntripStreamDecoder_t::decodeAuthType>},
    {"fee", none, fields(16), "whether there is one", tableFlag<16, &table_t::decodeYN>},
    {"bitrate", bitPerSecond, fields(17), "", tableNumber<17, unsigned>},
    {"misc", none, from(18), "all that follows", tableRest<18>},
};

constexpr valueRow_t casterRows[] = {
    {"host", none, fields(1), "", tableText<1>},
    {"port", none, fields(2), "", tableNumber<2, unsigned>},
    {"identifier", none, fields(3), "", tableText<3>},
    {"operator", none, fields(4), "", tableText<4>},
    {"nmea", none, fields(5), "whether the caster takes a position",
     tableFlag<5, &table_t::decodeOneZero>},
    {"country", none, fields(6), "", tableText<6>},
    {"latitude", degreesAsSent, fields(7), "north positive", tableNumber<7, float>},
    {"longitude", degreesAsSent, fields(8), "east positive", tableNumber<8, float>},
    {"fallbackHost", none, fields(9), "", tableText<9>},
    {"fallbackPort", none, fields(10), "", tableNumber<10, unsigned>},
    {"misc", none, from(11), "all that follows", tableRest<11>},
};

constexpr valueRow_t networkRows[] = {
    {"identifier", none, fields(1), "", tableText<1>},
    {"operator", none, fields(2), "", tableText<2>},
    {"authType", none, fields(3), "None, Basic or Digest", networkAuth},
    {"fee", none, fields(4), "whether there is one", tableFlag<4, &table_t::decodeYN>},
    {"webNet", none, fields(5), "address on the network", tableText<5>},
    {"webStr", none, fields(6), "address on its streams", tableText<6>},
    {"webReg", none, fields(7), "address for registration", tableText<7>},
    {"misc", none, from(8), "all that follows", tableRest<8>},
};

constexpr valueRow_t tableRows[] = {
    {"text", none, 0, "the line", wholeText},
};

constexpr recordType_t untyped(const char* name, const char* meaning) {
    return {name, meaning, nullptr, 0};
}

template <std::size_t count>
constexpr recordType_t typed(const char* name, const char* meaning,
                             const valueRow_t (&rows)[count]) {
    return {name, meaning, rows, count};
}

// The sentences in the order of the enumerators from 1 on, then the other records.
constexpr recordType_t types[] = {
    untyped("ALM", "almanac of a satellite"),
    typed("DBT", "depth below the transducer", dbtRows),
    typed("DPT", "depth and offset of the transducer", dptRows),
    typed("DTM", "datum", dtmRows),
    typed("GBS", "satellite fault detection", gbsRows),
    typed("GGA", "fix data", ggaRows),
    typed("GLL", "position", gllRows),
    typed("GSA", "satellites used and dilutions of precision", gsaRows),
    typed("GST", "error statistics of the pseudoranges", gstRows),
    typed("GSV", "satellites in view", gsvRows),
    typed("HDT", "true heading", hdtRows),
    typed("MWD", "wind direction and speed", mwdRows),
    typed("MWV", "wind speed and angle", mwvRows),
    typed("RMC", "recommended minimum data", rmcRows),
    typed("ROT", "rate of turn", rotRows),
    typed("THS", "true heading and status", thsRows),
    untyped("VDM", "message of another vessel's transponder"),
    typed("VTG", "course and speed over ground", vtgRows),
    typed("ZDA", "date and time", zdaRows),
    typed("PZWBGGA", "fix data", ggaRows),
    typed("PZWBGST", "error statistics with F-test", pzwbGstRows),
    typed("PZWBMDE", "marginally detectable error", pzwbMdeRows),
    typed("PSIMLBP", "acoustic position of a vessel or vehicle", psimLbpRows),
    typed("PSIMSSB", "acoustic position of a beacon", psimSsbRows),
    typed("PTPSR", "heading and attitude of two antennas", ptpsrRows),
    typed("SATELLITES", "a complete group of satellites in view", satellitesRows),
    typed("TSS1", "motion", motionRows),
    typed("ATS", "acoustic tracking", trackingRows),
    typed("STR", "stream of a sourcetable", streamRows),
    typed("CAS", "caster of a sourcetable", casterRows),
    typed("NET", "network of a sourcetable", networkRows),
    typed("TABLE", "another line of a sourcetable", tableRows),
};
constexpr const recordType_t* others = types + msgTypePtpsr;
static_assert(std::size(types) == msgTypePtpsr + 7, "every record type has its row");

} // namespace

const recordType_t* const recordTypes = types;
const std::size_t recordTypeCount = std::size(types);
const recordType_t& satellitesType = others[0];
const recordType_t& motionType = others[1];
const recordType_t& trackingType = others[2];

const recordType_t& tableType(ntripRecordType_t line) {
    switch (line) {
    case ntripRecordStream: return others[3];
    case ntripRecordCaster: return others[4];
    case ntripRecordNetwork: return others[5];
    case ntripRecordServer:
    case ntripRecordEndOfTable:
    case ntripRecordHeader:
    case ntripRecordUnknown: break;
    }
    return others[6];
}

const recordType_t* sentenceType(nmeaMsgType_t type) {
    switch (type) { // without a default, so that the compiler names a type that is missing
    case msgTypeUnknown: return nullptr;
    case msgTypeAlm:
    case msgTypeDbt:
    case msgTypeDpt:
    case msgTypeDtm:
    case msgTypeGbs:
    case msgTypeGga:
    case msgTypeGll:
    case msgTypeGsa:
    case msgTypeGst:
    case msgTypeGsv:
    case msgTypeHdt:
    case msgTypeMwd:
    case msgTypeMwv:
    case msgTypeRmc:
    case msgTypeRot:
    case msgTypeThs:
    case msgTypeVdm:
    case msgTypeVtg:
    case msgTypeZda:
    case msgTypePzwbGga:
    case msgTypePzwbGst:
    case msgTypePzwbMde:
    case msgTypePsimLbp:
    case msgTypePsimSsb:
    case msgTypePtpsr: return &types[type - 1];
    }
    return nullptr;
}

namespace {

// Whether a field is there and not empty.
bool isFilled(const source_t& source, unsigned index) {
    if (source.sentence != nullptr) {
        return !source.sentence->field(index)->isEmpty();
    }
    if (source.table != nullptr) {
        return source.table->fieldAt(index) != nullptr;
    }
    std::string text;
    return source.tracking != nullptr && source.tracking->decodeField(index, text);
}

unsigned fieldCountOf(const source_t& source) {
    return source.sentence != nullptr ? source.sentence->fieldCount()
           : source.table != nullptr  ? source.table->fieldCount()
                                      : trackingSlotCount;
}

} // namespace

bool isSent(const source_t& source, fieldSet_t fields) {
    if (source.motion != nullptr) {
        return true; // a motion record has all its columns
    }
    const unsigned count = fieldCountOf(source);
    for (unsigned i = 0; i < count; ++i) {
        const unsigned bit = i < fieldBits ? i : fieldBits - 1;
        if ((fields >> bit & 1) != 0 && isFilled(source, i)) {
            return true;
        }
    }
    return false;
}

bool readTimeOfDay(const nmeaMsg_t& view, sentTime_t& out) {
    if (!view.decodeTimeOfDay(out.time)) {
        return false;
    }
    for (const valueRow_t& row : *sentenceType(view.type())) {
        if (row.read == timeOfDay) {
            const auto index = static_cast<unsigned>(__builtin_ctzll(row.fields));
            out.seconds = view.field(index)->toString().substr(4);
        }
    }
    return true;
}

bool readTimeOfDay(const atsAsciiMsg_t& tracking, sentTime_t& out) {
    constexpr unsigned timeSlot = 3;
    std::string text;
    if (!tracking.decodeTimeOfDay(out.time) || !tracking.decodeField(timeSlot, text)) {
        return false;
    }
    // The milliseconds are a part of their own and a number, not the digits of a fraction.
    constexpr int partsWithFraction = 4;
    int parts = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        parts += text[i] != ':' && (i == 0 || text[i - 1] == ':') ? 1 : 0;
    }
    const double whole = std::trunc(out.time.second);
    out.seconds = fmt::format("{:02.0f}", whole);
    if (parts >= partsWithFraction) {
        out.seconds += fmt::format(".{:03.0f}", (out.time.second - whole) * 1000);
    }
    return true;
}

std::string placeOf(const valueRow_t& row) {
    if (row.place != nullptr) {
        return row.place;
    }
    const fieldSet_t fields = row.fields;
    std::string list;
    for (unsigned i = 0; i < fieldBits; ++i) {
        if ((fields >> i & 1) == 0) {
            continue;
        }
        const unsigned first = i;
        while (i + 1 < fieldBits && (fields >> (i + 1) & 1) != 0) {
            ++i;
        }
        list += (list.empty() ? "" : ",") + std::to_string(first);
        if (i + 1 == fieldBits) {
            list += "-";
        } else if (i > first) {
            list += (i == first + 1 ? "," : "-") + std::to_string(i);
        }
    }
    return list;
}
