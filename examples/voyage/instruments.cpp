#include "instruments.h"

#include <algorithm>
#include <string>

namespace voyage {

namespace {

constexpr number_t variation = 90; // magnetic, east

number_t magnetic(number_t angle) { return wrap(angle - variation); }

// What one mm/s, or one cm of depth, is in hundredths of a unit
struct unit_t {
    number_t factor;
    number_t divisor;
    const char* letter;
};
constexpr unit_t metresPerSecond{1, 10, "M"};
constexpr unit_t knots{360, 1852, "N"};
constexpr unit_t kilometresPerHour{36, 100, "K"};
constexpr unit_t milesPerHour{3600, 16093, "S"};
constexpr unit_t metres{1, 1, "M"};
constexpr unit_t feet{3937, 1200, "f"};
constexpr unit_t fathoms{3937, 7200, "F"};

// The text is cut off behind the hundredths, so it may be up to one hundredth too small.
field_t in(const unit_t& unit, number_t value, int digits = 1) {
    return {number(value * unit.factor / unit.divisor, 2, digits).text, value,
            static_cast<double>(unit.divisor) / static_cast<double>(unit.factor)};
}
field_t speedIn(const unit_t& unit, number_t speed, int digits = 1) {
    return in(unit, speed, digits).as("speedOverGround", 1e-3);
}
field_t windIn(const unit_t& unit, number_t speed) { return in(unit, speed).as("windSpeed", 1e-3); }
field_t depthIn(const unit_t& unit, number_t depth) { return in(unit, depth).as("depth", 1e-2); }

field_t latitude(const vessel_t& vessel) {
    return minutes(vessel.latitude, 2).as("latitude", 1.0 / degree);
}
field_t longitude(const vessel_t& vessel) {
    return minutes(vessel.longitude, 3).as("longitude", 1.0 / degree);
}
field_t northSouth(const vessel_t& vessel) { return vessel.latitude < 0 ? "S" : "N"; }
field_t eastWest(const vessel_t& vessel) { return vessel.longitude < 0 ? "W" : "E"; }

void zda(log_t& log, const vessel_t& v, number_t /*turn*/) {
    const day_t date = dayOf(v.clock / secondsOfDay);
    constexpr number_t hour = 15 * degree;
    const number_t zone = -(v.longitude + (v.longitude < 0 ? -hour / 2 : hour / 2)) / hour;
    log.record({"$GPZDA",
                {time(v.clock), number(date.day, 0, 2), number(date.month, 0, 2),
                 number(date.year, 0, 4).as("date", dateText(v.clock)),
                 number(zone, 0, 2).as("localOffset", 60), "00"}});
}

field_t prefixed(const char* prefix, field_t field) {
    field.text.insert(0, prefix);
    return field;
}

// Satellites in view and in use

struct satellite_t {
    number_t id;
    number_t elevation; // degrees
    number_t azimuth;   // degrees
};
struct constellation_t {
    const char* address;
    const satellite_t* satellites;
    number_t count;
    number_t signal; // 0 before version 4.10

    const satellite_t* begin() const { return satellites; }
    const satellite_t* end() const { return satellites + count; }
};
constexpr satellite_t gpsSky[] = {{2, 64, 211}, {5, 41, 142},  {7, 12, 77},  {12, 33, 305},
                                  {13, 8, 31},  {15, 55, 84},  {21, 6, 196}, {25, 24, 258},
                                  {29, 72, 20}, {30, 17, 122}, {18, 4, 170}, {31, 9, 341},
                                  {11, 36, 231}};
constexpr satellite_t glonassSky[] = {{66, 38, 64}, {67, 70, 341}, {76, 15, 22},
                                      {77, 47, 94}, {81, 3, 311},  {83, 21, 168},
                                      {84, 9, 220}, {68, 26, 298}, {75, 5, 131}};
constexpr satellite_t galileoSky[] = {{3, 44, 118}, {8, 27, 289},  {13, 61, 240},
                                      {15, 10, 49}, {21, 35, 190}, {26, 18, 330}};
constexpr satellite_t beiDouSky[] = {{19, 52, 129}, {20, 30, 68}, {29, 11, 273}, {36, 66, 166}};
constexpr constellation_t gps{"$GPGSV", gpsSky, 9, 1};
constexpr constellation_t secondGps{"$GPGSV", gpsSky, 5, 8}; // fewer send on this frequency
constexpr constellation_t glonass{"$GLGSV", glonassSky, 7, 1};
constexpr constellation_t galileo{"$GAGSV", galileoSky, 6, 7};
constexpr constellation_t beiDou{"$GBGSV", beiDouSky, 4, 0};
// Of a receiver that tracks more
constexpr constellation_t allGps{"$GPGSV", gpsSky, 13, 1};
constexpr constellation_t allGlonass{"$GLGSV", glonassSky, 9, 1};
constexpr number_t settingSatellite = 81;
constexpr number_t usedFrom = 10; // degrees of elevation

number_t elevation(const log_t& log, const vessel_t& v, const satellite_t& satellite) {
    // A receiver may go on listing a satellite that has just set.
    const number_t phase = v.epoch % 1800;
    if (satellite.id == settingSatellite && log.faulty() && phase >= 45 && phase < 65) {
        return -1;
    }
    return satellite.elevation + wave(v.epoch + satellite.id * 300, 7200, 3);
}

void gsvOf(log_t& log, const vessel_t& v, const constellation_t& sky) {
    const number_t sentences = (sky.count + 3) / 4;
    for (number_t i = 0; i < sentences; ++i) {
        const number_t satellites = std::min<number_t>(sky.count - 4 * i, 4);
        record_t sentence(sky.address,
                          {number(sentences).as("messageCount"), number(i + 1).as("messageNumber"),
                           number(sky.count, 0, 2).as("totalSatCount")});
        sentence.add({"satCount", "", static_cast<double>(satellites)});
        for (number_t j = 0; j < satellites; ++j) {
            const satellite_t& satellite = sky.satellites[4 * i + j];
            const number_t height = elevation(log, v, satellite);
            const number_t azimuth = (satellite.azimuth + v.epoch / 240) % 360;
            const number_t ratio = 31 + height / 4 + v.jitter(satellite.id, 4);
            sentence.add(
                {number(satellite.id, 0, 2).as("satellites.prn", 1, j),
                 number(height, 0, 2).as("satellites.elevation", 1, j),
                 number(azimuth, 0, 3).as("satellites.azimuth", 1, j),
                 fieldIf(height >= usedFrom - 2, number(ratio, 0, 2).as("satellites.snr", 1, j))});
        }
        if (sky.signal != 0) {
            sentence.add({number(sky.signal).as("signalId")});
        }
        log.record(sentence);
    }
}

void gsv(log_t& log, const vessel_t& v, number_t /*turn*/) {
    for (const constellation_t* sky : {&gps, &secondGps, &glonass, &galileo, &beiDou}) {
        gsvOf(log, v, *sky);
    }
}

number_t used(const log_t& log, const vessel_t& v, const constellation_t& sky) {
    number_t count = 0;
    for (const satellite_t& satellite : sky) {
        count += elevation(log, v, satellite) >= usedFrom ? 1 : 0;
    }
    return count;
}

number_t hdop(const vessel_t& v) { return 80 + wave(v.epoch, 300, 12); }

void gsaOf(log_t& log, const vessel_t& v, const constellation_t& sky, number_t system) {
    record_t sentence("$GNGSA", {field_t("A").as("manualMode"), number(3).as("fixMode")});
    number_t count = 0;
    for (const satellite_t& satellite : sky) {
        if (elevation(log, v, satellite) >= usedFrom) {
            sentence.add({number(satellite.id, 0, 2).as("satIds", 1, count++)});
        }
    }
    for (; count < 12; ++count) {
        sentence.add({""});
    }
    const number_t h = hdop(v);
    sentence.add({number(h * 8 / 5, 2).as("pdop"), number(h, 2).as("hdop"),
                  number(h * 5 / 4, 2).as("vdop"), number(system).as("signalId")});
    log.record(sentence);
}

void gsa(log_t& log, const vessel_t& v, number_t /*turn*/) {
    gsaOf(log, v, gps, 1);
    gsaOf(log, v, glonass, 2);
    gsaOf(log, v, galileo, 3);
}

// Position and its quality

void ggaOf(log_t& log, const vessel_t& v, const char* address, number_t station) {
    const number_t count = used(log, v, gps) + used(log, v, glonass) + used(log, v, galileo);
    log.record(
        {address,
         {time(v.clock), latitude(v), northSouth(v), longitude(v), eastWest(v),
          number(2).as("quality"), number(count, 0, 2).as("satCount"),
          number(hdop(v), 2).as("hdop"), number(1240 + wave(v.epoch, 8, 45), 2).as("altitude"), "M",
          number(4690, 2).as("geoidalSeparation"), "M",
          number(20 + v.epoch % 6 * 10, 1).as("diffAge"),
          number(station, 0, 4).as("refStationId")}});
}

void gga(log_t& log, const vessel_t& v, number_t /*turn*/) { ggaOf(log, v, "$GNGGA", 120); }
void pzwbGga(log_t& log, const vessel_t& v, number_t /*turn*/) { ggaOf(log, v, "$PZWBGGA", 512); }

record_t gllSentence(const vessel_t& v) {
    return {"$GNGLL",
            {latitude(v), northSouth(v), longitude(v), eastWest(v), time(v.clock),
             field_t("A").as("validity"), field_t("D").as("fixMode")}};
}

void gll(log_t& log, const vessel_t& v, number_t /*turn*/) { log.record(gllSentence(v)); }

void rmc(log_t& log, const vessel_t& v, number_t turn) {
    // This older receiver restarts now and then and does not know the date at once.
    if (log.faulty() && turn % 600 == 4) {
        log.record(
            {"$GPRMC",
             {time(v.clock), field_t("V").as("validity"), "", "", "", "", "", "",
              field_t("060180").as("date", "1980-01-06"), "", "", field_t("N").as("fixMode")}});
        return;
    }
    const day_t date = dayOf(v.clock / secondsOfDay);
    log.record(
        {"$GPRMC",
         {time(v.clock), field_t("A").as("validity"), latitude(v), northSouth(v), longitude(v),
          eastWest(v), speedIn(knots, v.speed, 3), number(v.course, 2, 3).as("courseOverGround"),
          number(date.day * 10000 + date.month * 100 + date.year % 100, 0, 6)
              .as("date", dateText(v.clock)),
          number(variation, 2, 3).as("magneticVariation"), "E", field_t("D").as("fixMode")}});
}

void gst(log_t& log, const vessel_t& v, number_t /*turn*/) {
    log.record({"$GNGST",
                {time(v.clock), number(640 + v.jitter(100, 90), 3).as("rangeRms"),
                 number(412 + v.jitter(101, 60), 3).as("semiMajor"),
                 number(305 + v.jitter(102, 60), 3).as("semiMinor"),
                 number(471 + wave(v.epoch, 900, 220), 1).as("orientation"),
                 number(355 + v.jitter(103, 40), 3).as("latitudeError"),
                 number(340 + v.jitter(104, 40), 3).as("longitudeError"),
                 number(720 + v.jitter(105, 90), 3).as("altitudeError")}});
}

void gbs(log_t& log, const vessel_t& v, number_t turn) {
    const bool suspected = turn % 2 == 0; // a satellite
    log.record({"$GNGBS",
                {time(v.clock), number(110 + v.jitter(110, 30), 2).as("latitudeError"),
                 number(105 + v.jitter(111, 30), 2).as("longitudeError"),
                 number(230 + v.jitter(112, 60), 2).as("altitudeError"),
                 fieldIf(suspected, number(25).as("failedSatId")),
                 fieldIf(suspected, number(3, 3).as("failedSatProbability")),
                 fieldIf(suspected, number(-1240 - v.jitter(113, 300), 2).as("failedSatBias")),
                 fieldIf(suspected, number(87, 2).as("biasStdDev"))}});
}

void pzwbGst(log_t& log, const vessel_t& v, number_t /*turn*/) {
    log.record({"$PZWBGST",
                {time(v.clock), number(12 + v.jitter(120, 4), 3).as("rangeRms"),
                 number(31 + v.jitter(121, 6), 3).as("semiMajor"),
                 number(22 + v.jitter(122, 6), 3).as("semiMinor"),
                 number(2730 + v.jitter(123, 80), 1).as("orientation"),
                 number(24 + v.jitter(124, 4), 3).as("latitudeError"),
                 number(21 + v.jitter(125, 4), 3).as("longitudeError"),
                 number(43 + v.jitter(126, 8), 3).as("altitudeError"),
                 number(1 + v.jitter(127, 2)).as("ftest")}});
}

void pzwbMde(log_t& log, const vessel_t& v, number_t turn) {
    log.record(
        {"$PZWBMDE",
         {time(v.clock), number(gps.satellites[turn % 9].id, 0, 2).as("prn"),
          number(turn % 3).as("measType"), number(413 + v.jitter(130, 30), 2).as("noncentrality"),
          number(286 + v.jitter(131, 90), 2).as("mde"),
          number(v.jitter(132, 80) - 40, 2).as("latitudeError"),
          number(v.jitter(133, 80) - 40, 2).as("longitudeError"),
          number(v.jitter(134, 180) - 90, 2).as("altitudeError")}});
}

void dtm(log_t& log, const vessel_t& /*vessel*/, number_t turn) {
    constexpr double southOrWest = -1.0 / 60; // minutes
    const bool local = turn % 2 != 0;
    log.record({"$GPDTM",
                {field_t(local ? "999" : "W84").as("localDatum"),
                 fieldIf(local, field_t("A").as("localDatumSubdivision")),
                 number(local ? 512 : 0, local ? 4 : 1).as("latitudeOffset", southOrWest),
                 local ? "S" : "N",
                 number(local ? 835 : 0, local ? 4 : 1).as("longitudeOffset", southOrWest),
                 local ? "W" : "E", number(local ? -30 : 0, 1).as("altitudeOffset"),
                 field_t("W84").as("referenceDatum")}});
}

// Heading and motion

void hdt(log_t& log, const vessel_t& v, number_t /*turn*/) {
    log.record({"$HEHDT", {number(v.heading, 2).as("heading"), "T"}});
}

void ths(log_t& log, const vessel_t& v, number_t /*turn*/) {
    log.record({"$HETHS", {number(v.heading, 2).as("heading"), field_t("A").as("validity")}});
}

void rot(log_t& log, const vessel_t& v, number_t /*turn*/) { // degrees a minute
    log.record(
        {"$TIROT",
         {number(v.rateOfTurn / 10, 1).as("rateOfTurn", 1.0 / 60), field_t("A").as("validity")}});
}

void vtgIn(log_t& log, const vessel_t& v, bool inKnots, bool inKilometres) {
    log.record({"$GNVTG",
                {number(v.course, 2, 3).as("trueCourseOverGround"), "T",
                 number(magnetic(v.course), 2, 3).as("magneticCourseOverGround"), "M",
                 fieldIf(inKnots, speedIn(knots, v.speed, 3)), fieldIf(inKnots, "N"),
                 fieldIf(inKilometres, speedIn(kilometresPerHour, v.speed, 3)),
                 fieldIf(inKilometres, "K"), field_t("D").as("fixMode")}});
}

void vtg(log_t& log, const vessel_t& v, number_t turn) { vtgIn(log, v, turn % 4 != 3, true); }

void ptpsr(log_t& log, const vessel_t& v, number_t /*turn*/) {
    log.record(
        {"$PTPSR",
         {field_t("ATT").as("sentenceFormatter"), time(v.clock, 20),
          field_t("A").as("attitudeAvailability"), field_t("M").as("pOSAntennaPositionType"),
          number(v.heading, 2).as("heading"), number(v.pitch, 2).as("inclination"),
          number(2013 + v.jitter(140, 3), 3).as("slopeDistance"),
          number(8 + v.jitter(141, 4), 2).as("headingRMS"),
          number(14 + v.jitter(142, 5), 2).as("inclinationRMS"), number(-35, 2).as("azimuthOffset"),
          number(used(log, v, gps)).as("numGPSSatellites"),
          number(used(log, v, glonass)).as("numGLONASSSatellites"),
          number(used(log, v, beiDou)).as("numBeiDouSatellites"),
          number(used(log, v, galileo)).as("numGalileoSatellites"),
          number(0).as("numOtherSatellites")}});
}

// Depth and wind

void dbtIn(log_t& log, const vessel_t& v, bool inFeet, bool inMetres, bool inFathoms) {
    log.record({"$SDDBT",
                {fieldIf(inFeet, depthIn(feet, v.depth)), fieldIf(inFeet, "f"),
                 fieldIf(inMetres, depthIn(metres, v.depth)), fieldIf(inMetres, "M"),
                 fieldIf(inFathoms, depthIn(fathoms, v.depth)), fieldIf(inFathoms, "F")}});
}

void dbt(log_t& log, const vessel_t& v, number_t turn) { // all, metres alone, fathoms alone
    dbtIn(log, v, turn % 3 == 0, turn % 3 != 2, turn % 3 != 1);
}

record_t dptSentence(const vessel_t& v) { return {"$SDDPT", {depthIn(metres, v.depth), "3.20"}}; }

void dpt(log_t& log, const vessel_t& v, number_t /*turn*/) {
    log.record(dptSentence(v), checksum_t::lowerCase);
}

void mwd(log_t& log, const vessel_t& v, number_t turn) {
    const bool both = turn % 2 == 0; // otherwise m/s alone
    log.record({"$WIMWD",
                {number(v.windDirection, 2).as("trueWindDirection"), "T",
                 number(magnetic(v.windDirection), 2).as("magneticWindDirection"), "M",
                 fieldIf(both, windIn(knots, v.windSpeed)), fieldIf(both, "N"),
                 windIn(metresPerSecond, v.windSpeed), "M"}});
}

void mwv(log_t& log, const vessel_t& v, number_t turn) {
    number_t angle = wrap(v.windDirection - v.heading);
    number_t speed = v.windSpeed;
    const bool relative = turn % 8 < 4;
    if (relative) { // what the vessel's own speed makes of the wind
        const number_t ahead = speed * cosine(angle) / unity + v.speed;
        const number_t starboard = speed * sine(angle) / unity;
        angle = direction(ahead, starboard);
        speed = squareRoot(ahead * ahead + starboard * starboard);
    }
    static constexpr unit_t units[] = {metresPerSecond, knots, kilometresPerHour, milesPerHour};
    const unit_t& unit = units[turn % 4];
    log.record(
        {"$WIMWV",
         {number(angle / 10, 1).as("windDirection"), field_t(relative ? "R" : "T").as("reference"),
          windIn(unit, speed), unit.letter, field_t("A").as("validity")}});
}

// Acoustic positions of vehicles in the water

struct vehicle_t {
    number_t starboard; // mm from the vessel
    number_t forward;
    number_t depth;
};

vehicle_t vehicleAt(const vessel_t& v, number_t index) {
    const number_t moment = v.epoch + 37 * index;
    return {(index % 2 == 0 ? 14000 : -17500) + wave(moment, 90, 4000),
            wave(moment, 70, 5000) - 21000 - 6000 * index, 28400 + wave(moment, 180, 2600)};
}

number_t range(const vehicle_t& at, number_t depth) {
    return squareRoot(at.starboard * at.starboard + at.forward * at.forward + depth * depth);
}

// Adds a place in one of the kinds of coordinates: P polar, C from the vessel, G in the survey's
// grid, U UTM, R geographic; by heading (H), north first (N) or east first (E).
void addPlace(record_t& record, const vessel_t& v, const vehicle_t& at, char kind, char order) {
    const number_t cos = cosine(v.heading);
    const number_t sin = sine(v.heading);
    vector_t place{(at.forward * cos - at.starboard * sin) / unity,
                   (at.forward * sin + at.starboard * cos) / unity};
    if (kind == 'P') {
        record.add({number(range(at, 0) / 10, 2).as("rawX").as("range"),
                    number(direction(at.forward, at.starboard), 2).as("rawY").as("bearing")});
        return;
    }
    if (kind == 'R') { // 1e-7 degrees are six units of a position
        record.add(
            {number((v.latitude + unitsNorth(place.north)) / 6, 7).as("rawX").as("latitude"),
             number((v.longitude + unitsEast(place.east)) / 6, 7).as("rawY").as("longitude")});
        return;
    }
    if (order == 'H') {
        place = {at.forward, at.starboard};
    }
    if (kind == 'G' || kind == 'U') {
        place = {place.north + v.grid().north, place.east + v.grid().east};
    }
    if (kind == 'U') { // the grid is taken as aligned with the UTM zone
        place = {place.north + 5565204000, place.east + 285931000};
    }
    static constexpr const char* keys[][2] = {{"northOffset", "eastOffset"},
                                              {"forwardOffset", "starboardOffset"},
                                              {"utmNorthing", "utmEasting"}};
    const auto& key = keys[kind == 'U' ? 2 : order == 'H' ? 1 : 0];
    const field_t north = number(place.north / 10, 2).as(key[0]);
    const field_t east = number(place.east / 10, 2).as(key[1]);
    record.add(
        {(order == 'N' ? north : east).as("rawX"), (order == 'N' ? east : north).as("rawY")});
}

void psimSsb(log_t& log, const vessel_t& v, number_t turn) {
    static constexpr char layouts[][2][2] = {{"P", "H"}, {"C", "H"}, {"C", "N"}, {"C", "E"},
                                             {"U", "N"}, {"U", "E"}, {"R", "N"}};
    static constexpr const char* filters[] = {"M", "F", "P"};
    const auto& layout = layouts[turn % 7];
    const bool lost = turn % 20 == 11;
    const vehicle_t at = vehicleAt(v, turn % 2);
    const field_t beacon = prefixed("B", number(turn % 2 == 0 ? 1 : 12, 0, 2));
    record_t sentence("$PSIMSSB",
                      {time(v.clock, 40), beacon.as("beaconId", beacon.text).as("beaconNumber"),
                       field_t(lost ? "V" : "A").as("status"),
                       fieldIf(lost, field_t("E12").as("errorCode")),
                       field_t(layout[0]).as("coordType"), field_t(layout[1]).as("orientation"),
                       field_t(filters[turn % 3]).as("filterCode")});
    addPlace(sentence, v, at, *layout[0], *layout[1]);
    const field_t additions[][3] = {
        {"N"},
        // ms at 1500 m/s
        {"T", number(range(at, at.depth) / 15, 2).as("rawAddInfo1").as("rangeTime")},
        {"D", number(at.depth / 10 + 3, 2).as("rawAddInfo1").as("addInfoDepth")},
        {"C", number(wrap(v.heading + 700) / 10, 1).as("rawAddInfo1")},
        {"I", number(v.roll / 2, 2).as("rawAddInfo1").as("roll"),
         number(v.pitch / 2, 2).as("rawAddInfo2").as("pitch")}};
    const auto& addition = additions[turn % 5];
    sentence.add({number(at.depth / 10, 2).as("depth"),
                  number(35 + v.jitter(150, 20), 2).as("expectedAccuracy"),
                  addition[0].as("addInfoType"), addition[1], addition[2]});
    log.record(sentence);
}

void psimLbp(log_t& log, const vessel_t& v, number_t turn) {
    static constexpr const char* objects[] = {"Ve", "R1", "R2", "R3", "R4"};
    static constexpr const char* types[] = {"C", "L", "U", "E", "R"};
    static constexpr char layouts[][3] = {"GN", "GE", "UN", "UE", "RN"};
    const number_t object = turn % 5;
    const number_t type = (turn + turn / 5) % 5;
    const vehicle_t at = object == 0 ? vehicle_t{0, 0, 3200} : vehicleAt(v, object);
    record_t sentence("$PSIMLBP",
                      {time(v.clock, 70), "1", field_t(objects[object]).as("objectType"),
                       field_t(turn % 13 == 8 ? "???" : "A").as("status"),
                       field_t(types[type]).as("coordType")});
    addPlace(sentence, v, at, layouts[type][0], layouts[type][1]);
    sentence.add({number(at.depth / 10, 2).as("depth"),
                  number(42 + v.jitter(160, 20), 2).as("semiMajor"),
                  number(21 + v.jitter(161, 20), 2).as("semiMinor"),
                  number(1180 + wave(v.epoch, 400, 300), 1).as("orientation"),
                  number(9 + v.jitter(162, 8), 2).as("rangeRms")});
    log.record(sentence);
}

// What others read

void vhw(log_t& log, const vessel_t& v, number_t /*turn*/) {
    const number_t throughWater = v.speed - 310;
    log.record({"$VWVHW",
                {number(v.heading / 10, 1).as("heading"), "T",
                 number(magnetic(v.heading) / 10, 1).as("magneticHeading"), "M",
                 in(knots, throughWater).as("speedThroughWater", 1e-3), "N",
                 in(kilometresPerHour, throughWater), "K"}},
               checksum_t::none);
}

void alm(log_t& log, const vessel_t& v, number_t turn) {
    const number_t week = (v.clock / secondsOfDay - 3657) / 7 % 1024; // from 1980-01-06
    log.record({"$GPALM",
                {"9", number(turn % 9 + 1), number(gps.satellites[turn % 9].id, 0, 2), number(week),
                 "00,4D3A,4E,0D5F,FD58,A10D24,2E561C,A9C0D1,D5B201,0FA,003"}});
}

void vdm(log_t& log, const vessel_t& /*vessel*/, number_t turn) {
    // A tanker at anchor and a guard vessel
    static constexpr const char* payloads[] = {"13M@=rQ000wwmS@LgS@007?60000",
                                               "13M@=r@01LwwwP8LfnLK8a3B0000"};
    log.record({"!AIVDM",
                {number(1).as("fragmentCount"), number(1).as("fragmentNumber"), "",
                 field_t(turn % 2 == 0 ? "A" : "B").as("channel"),
                 field_t(payloads[turn % 2]).as("payload"), number(0).as("fillBits")}});
}

void txt(log_t& log, const vessel_t& /*vessel*/, number_t /*turn*/) {
    log.record({"$GNTXT",
                {number(1, 0, 2).as("messageCount"), number(1, 0, 2).as("messageNumber"),
                 number(2, 0, 2).as("textId"), field_t("ANTSTATUS=OK").as("text")}});
}

void winch(log_t& log, const vessel_t& v, number_t turn) {
    log.record({"$PWNC",
                {number(turn + 1), number(6240 + wave(v.epoch, 180, 260), 2),
                 number(183 + v.jitter(170, 25), 2), "HOLD"}});
}

// Records that are no sentences

// The sign column and the four digits of a motion record.
field_t column(number_t value) {
    const field_t digits = number(value, 0, 4);
    return {value < 0 ? digits.text : ' ' + digits.text, value, 0.5};
}

void motion(log_t& log, const vessel_t& v, number_t turn) {
    const number_t horizontal = 2 + v.jitter(180, 9);
    const number_t vertical = wave(v.epoch, 8, 640);
    // It settles, and ends up fully aided.
    static constexpr const char* status[] = {"U", "u", "G", "g", "H", "h", "F", "f"};
    log.record(
        {"TSS1",
         ":",
         "",
         {field_t(hexadecimal(horizontal, 2), horizontal, 0.5).as("horizontalAcceleration", 0.0383),
          field_t(hexadecimal(vertical < 0 ? vertical + 65536 : vertical, 4), vertical, 0.5)
              .as("verticalAcceleration", 0.000625),
          " ", column(wave(v.epoch, 8, 85)).as("heave", 0.01),
          field_t(status[turn < 16 ? turn / 2 : 6]).as("status"), column(v.roll).as("roll", 0.01),
          " ", column(v.pitch).as("pitch", 0.01)}},
        checksum_t::none);
}

void tracking(log_t& log, const vessel_t& v, number_t turn) {
    static constexpr const char* months[] = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                             "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
    const day_t date = dayOf(v.clock / secondsOfDay);
    const std::string milliseconds = number(100 + v.jitter(190, 9)).text;
    const field_t beacon = number(12);
    record_t record("ATS", number(date.day, 0, 2).text.c_str(), " ",
                    {months[date.month - 1], number(date.year).as("date", dateText(v.clock)),
                     instant(clockText(v.clock) + ':' + milliseconds, v.clock, milliseconds),
                     prefixed("B:", beacon.as("beaconId", beacon.text).as("beaconNumber")),
                     prefixed("X:", number(2500 + v.jitter(191, 99), 2).as("beaconX")),
                     prefixed("Y:", number(-3370 + v.jitter(192, 99), 2).as("beaconY")),
                     prefixed("D:", number(v.depth / 2, 2).as("beaconDepth")),
                     prefixed("P:", number(v.pitch, 2).as("vesselPitch")),
                     prefixed("R:", number(v.roll, 2).as("vesselRoll")),
                     prefixed("H:", number(v.heading, 2).as("vesselHeading"))});
    if (turn % 2 == 0) {
        record.add({prefixed("E:", field_t("0").as("errorCode")),
                    prefixed("AP:", number(wave(v.epoch, 60, 250), 2).as("anglePitchTelemetry")),
                    prefixed("AR:", number(wave(v.epoch, 50, 120), 2).as("angleRollTelemetry")),
                    prefixed("CS:", number(35, 2).as("currentFlowSpeed")),
                    prefixed("CD:", number(14200, 2).as("currentFlowDirection")),
                    prefixed("SX:", number(v.grid().east / 10, 2).as("vesselPositionX")),
                    prefixed("SY:", number(v.grid().north / 10, 2).as("vesselPositionY")),
                    prefixed("SH:", number(80, 2).as("vesselPositionHdop")),
                    prefixed("SQ:", number(2).as("vesselPositionQuality"))});
    }
    log.record(record);
}

// What a caster answers when it is asked for its table. The header lines have no values: what a
// reader makes of them depends on the line before, which may be damaged.
void caster(log_t& log, const vessel_t& /*vessel*/, number_t /*turn*/) {
    struct tableLine_t {
        const char* text;
        const char* values;
    };
    static constexpr tableLine_t lines[] = {
        {"SOURCETABLE 200 OK", R"-("type":"TABLE","text":"SOURCETABLE 200 OK")-"},
        {"Server: Harbour Caster/1.2", ""},
        {"Content-Type: text/plain", ""},
        {"CAS;caster.example;2101;HARBOUR;Port Authority;0;GBR;50.21;0.01;0.0.0.0;0;none",
         R"-("type":"CAS","host":"caster.example","port":2101,"identifier":"HARBOUR",)-"
         R"-("operator":"Port Authority","nmea":false,"country":"GBR","latitude":[50.21,0.005],)-"
         R"-("longitude":[0.01,0.005],"fallbackHost":"0.0.0.0","fallbackPort":0,"misc":"none")-"},
        {"NET;HARBOUR;Port Authority;B;N;http://caster.example;none;register@caster.example;none",
         R"-("type":"NET","identifier":"HARBOUR","operator":"Port Authority","authType":"Basic",)-"
         R"-("fee":false,"webNet":"http://caster.example","webStr":"none",)-"
         R"-("webReg":"register@caster.example","misc":"none")-"},
        {"STR;PIER1;Pier One;RTCM "
         "3.2;1004(1),1012(1);2;GPS+GLO;HARBOUR;GBR;50.20;0.00;0;0;base;none;B;N;9600;",
         R"-("type":"STR","mountpoint":"PIER1","identifier":"Pier One","format":"RTCM 3.2",)-"
         R"-("formatDetails":"1004(1),1012(1)","carrierType":"L1L2","navSystem":"GPS+GLO",)-"
         R"-("network":"HARBOUR","country":"GBR","latitude":[50.2,0.005],"longitude":[0,0.005],)-"
         R"-("nmea":false,"solutionType":"Single","generator":"base","compression":"none",)-"
         R"-("authType":"Basic","fee":false,"bitrate":9600)-"},
        {"STR;VRS2;Virtual;RTCM "
         "3.2;1074(1),1084(1);2;GPS+GLO+GAL;HARBOUR;GBR;50.25;-0.05;1;1;net;none;D;Y;19200;none",
         R"-("type":"STR","mountpoint":"VRS2","identifier":"Virtual","format":"RTCM 3.2",)-"
         R"-("formatDetails":"1074(1),1084(1)","carrierType":"L1L2","navSystem":"GPS+GLO+GAL",)-"
         R"-("network":"HARBOUR","country":"GBR","latitude":[50.25,0.005],)-"
         R"-("longitude":[-0.05,0.005],"nmea":true,"solutionType":"Network","generator":"net",)-"
         R"-("compression":"none","authType":"Digest","fee":true,"bitrate":19200,"misc":"none")-"},
        {"STR;OPEN3;Old Mole;RTCM "
         "2.3;1(1),3(19);0;GPS;HARBOUR;GBR;50.18;0.02;0;0;base;none;N;N;2400;",
         R"-("type":"STR","mountpoint":"OPEN3","identifier":"Old Mole","format":"RTCM 2.3",)-"
         R"-("formatDetails":"1(1),3(19)","carrierType":"None","navSystem":"GPS",)-"
         R"-("network":"HARBOUR","country":"GBR","latitude":[50.18,0.005],)-"
         R"-("longitude":[0.02,0.005],"nmea":false,"solutionType":"Single",)-"
         R"-("generator":"base","compression":"none",)-"
         R"-("authType":"None","fee":false,"bitrate":2400)-"},
        {"ENDSOURCETABLE", R"-("type":"TABLE","text":"ENDSOURCETABLE")-"}};
    for (const tableLine_t& line : lines) {
        log.line(line.text, line.values);
    }
}

// An instrument speaks at the epochs phase, phase + period and so on, in the order of the table.
// The clock comes first, so that whatever follows has a date.
struct instrument_t {
    number_t period; // seconds
    number_t phase;
    void (*write)(log_t& log, const vessel_t& v, number_t turn); // turn counts from 0
};
constexpr instrument_t instruments[] = {
    {5, 0, zda},      {1, 0, gga},     {1, 0, hdt},      {1, 0, rot},      {2, 0, rmc},
    {2, 1, vtg},      {5, 1, gll},     {10, 3, gsa},     {10, 4, gsv},     {10, 7, gst},
    {20, 9, gbs},     {5, 3, pzwbGga}, {10, 8, pzwbGst}, {10, 6, pzwbMde}, {2, 0, ths},
    {5, 2, ptpsr},    {30, 5, dtm},    {3, 1, dbt},      {2, 1, dpt},      {5, 4, mwd},
    {2, 0, mwv},      {2, 1, psimSsb}, {4, 2, psimLbp},  {4, 3, vhw},      {60, 12, alm},
    {6, 5, vdm},      {30, 11, txt},   {10, 9, winch},   {1, 0, motion},   {6, 4, tracking},
    {60, 33, caster},
};

// The mix. Its instruments speak a fixed number of times in fifteen seconds, evenly spread. They
// send a hundred sentences in that time: 25 of them are the ten groups of satellites in view.

void gsvOfMix(log_t& log, const vessel_t& v, number_t turn) {
    static constexpr const constellation_t* skies[] = {&allGps, &beiDou,    &galileo, &allGlonass,
                                                       &allGps, &beiDou,    &galileo, &allGps,
                                                       &beiDou, &allGlonass};
    gsvOf(log, v, *skies[turn % 10]);
}

void gsaOfMix(log_t& log, const vessel_t& v, number_t turn) {
    static constexpr const constellation_t* skies[] = {&allGps, &allGlonass, &galileo};
    gsaOf(log, v, *skies[turn % 3], turn % 3 + 1);
}

void vtgOfMix(log_t& log, const vessel_t& v, number_t turn) {
    vtgIn(log, v, turn % 4 != 3, turn % 4 != 2);
}

void dbtOfMix(log_t& log, const vessel_t& v, number_t turn) { // all, or one alone
    dbtIn(log, v, turn % 4 < 2, turn % 4 % 2 == 0, turn % 4 == 0 || turn % 4 == 3);
}

void dptOfMix(log_t& log, const vessel_t& v, number_t /*turn*/) { log.record(dptSentence(v)); }

constexpr number_t mixPeriod = 15;
struct share_t {
    number_t times;
    void (*write)(log_t& log, const vessel_t& v, number_t turn);
};
constexpr share_t shares[] = {{4, zda},      {15, gga}, {15, rmc},    {10, gsvOfMix}, {8, gsaOfMix},
                              {8, vtgOfMix}, {8, hdt},  {4, rot},     {4, gst},       {3, gll},
                              {2, dbtOfMix}, {2, mwv},  {2, dptOfMix}};

} // namespace

void writeEpoch(const vessel_t& vessel, log_t& log) {
    for (const instrument_t& instrument : instruments) {
        const number_t since = vessel.epoch - instrument.phase;
        if (since >= 0 && since % instrument.period == 0) {
            instrument.write(log, vessel, since / instrument.period);
        }
    }
    // One sentence of the day's last second gets stuck on its way.
    if (log.faulty() && vessel.clock % secondsOfDay == secondsOfDay - 1) {
        log.hold(gllSentence(vessel));
    }
}

void writeMixedEpoch(const vessel_t& vessel, log_t& log) {
    for (const share_t& share : shares) {
        const number_t done = vessel.epoch * share.times;
        if (done % mixPeriod < share.times) {
            share.write(log, vessel, done / mixPeriod);
        }
    }
}

} // namespace voyage
