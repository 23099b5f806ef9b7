#include "instruments.h"

#include <iterator>
#include <string>

namespace voyage {

namespace {

constexpr number_t variation = 90; // magnetic, east

number_t magnetic(number_t angle) { return wrap(angle - variation); }

// mm/s, and cm of depth, in hundredths of other units
number_t knots(number_t speed) { return speed * 360 / 1852; }
number_t kilometresPerHour(number_t speed) { return speed * 36 / 100; }
number_t milesPerHour(number_t speed) { return speed * 3600 / 16093; }
number_t feet(number_t depth) { return depth * 3937 / 1200; }

field_t latitude(const vessel_t& vessel) { return minutes(vessel.latitude, 2); }
field_t longitude(const vessel_t& vessel) { return minutes(vessel.longitude, 3); }
field_t northSouth(const vessel_t& vessel) { return vessel.latitude < 0 ? "S" : "N"; }
field_t eastWest(const vessel_t& vessel) { return vessel.longitude < 0 ? "W" : "E"; }

void zda(log_t& log, const vessel_t& v, number_t /*turn*/) {
    const day_t date = dayOf(v.clock / secondsOfDay);
    log.sentence({"$GPZDA",
                  {time(v.clock), number(date.day, 0, 2), number(date.month, 0, 2),
                   number(date.year, 0, 4), "00", "00"}});
}

// Satellites in view and in use

struct satellite_t {
    number_t id;
    number_t elevation; // degrees
    number_t azimuth;   // degrees
};
constexpr satellite_t gps[] = {{2, 64, 211},  {5, 41, 142},  {7, 12, 77},
                               {12, 33, 305}, {13, 8, 31},   {15, 55, 84},
                               {21, 6, 196},  {25, 24, 258}, {29, 72, 20}};
constexpr satellite_t glonass[] = {{66, 38, 64}, {67, 70, 341}, {76, 15, 22}, {77, 47, 94},
                                   {81, 3, 311}, {83, 21, 168}, {84, 9, 220}};
constexpr satellite_t galileo[] = {{3, 44, 118}, {8, 27, 289},  {13, 61, 240},
                                   {15, 10, 49}, {21, 35, 190}, {26, 18, 330}};
constexpr satellite_t beiDou[] = {{19, 52, 129}, {20, 30, 68}, {29, 11, 273}, {36, 66, 166}};
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

struct group_t {
    const char* address;
    const satellite_t* satellites;
    number_t count;
    const char* signal; // none before version 4.10
};
constexpr group_t groups[] = {{"$GPGSV", gps, std::size(gps), "1"},
                              {"$GPGSV", gps, 5, "8"}, // fewer send on the second frequency
                              {"$GLGSV", glonass, std::size(glonass), "1"},
                              {"$GAGSV", galileo, std::size(galileo), "7"},
                              {"$GBGSV", beiDou, std::size(beiDou), nullptr}};

void gsv(log_t& log, const vessel_t& v, number_t /*turn*/) {
    for (const group_t& group : groups) {
        const number_t sentences = (group.count + 3) / 4;
        for (number_t i = 0; i < sentences; ++i) {
            sentence_t sentence(group.address,
                                {number(sentences), number(i + 1), number(group.count, 0, 2)});
            for (number_t j = 4 * i; j < group.count && j < 4 * i + 4; ++j) {
                const satellite_t& satellite = group.satellites[j];
                const number_t height = elevation(log, v, satellite);
                const number_t ratio = 31 + height / 4 + v.jitter(satellite.id, 4);
                sentence.add({number(satellite.id, 0, 2), number(height, 0, 2),
                              number((satellite.azimuth + v.epoch / 240) % 360, 0, 3),
                              fieldIf(height >= usedFrom - 2, number(ratio, 0, 2))});
            }
            if (group.signal != nullptr) {
                sentence.add({group.signal});
            }
            log.sentence(sentence);
        }
    }
}

template <typename Satellites>
number_t used(const log_t& log, const vessel_t& v, const Satellites& satellites) {
    number_t count = 0;
    for (const satellite_t& satellite : satellites) {
        count += elevation(log, v, satellite) >= usedFrom ? 1 : 0;
    }
    return count;
}

number_t hdop(const vessel_t& v) { return 80 + wave(v.epoch, 300, 12); }

template <typename Satellites>
void gsaOf(log_t& log, const vessel_t& v, const Satellites& satellites, const char* system) {
    sentence_t sentence("$GNGSA", {"A", "3"});
    for (const satellite_t& satellite : satellites) {
        if (elevation(log, v, satellite) >= usedFrom) {
            sentence.add({number(satellite.id, 0, 2)});
        }
    }
    for (number_t i = used(log, v, satellites); i < 12; ++i) {
        sentence.add({""});
    }
    const number_t h = hdop(v);
    sentence.add({number(h * 8 / 5, 2), number(h, 2), number(h * 5 / 4, 2), system});
    log.sentence(sentence);
}

void gsa(log_t& log, const vessel_t& v, number_t /*turn*/) {
    gsaOf(log, v, gps, "1");
    gsaOf(log, v, glonass, "2");
    gsaOf(log, v, galileo, "3");
}

// Position and its quality

void ggaOf(log_t& log, const vessel_t& v, const char* address, const char* station) {
    const number_t count = used(log, v, gps) + used(log, v, glonass) + used(log, v, galileo);
    log.sentence({address,
                  {time(v.clock), latitude(v), northSouth(v), longitude(v), eastWest(v), "2",
                   number(count, 0, 2), number(hdop(v), 2), number(1240 + wave(v.epoch, 8, 45), 2),
                   "M", "46.90", "M", number(20 + v.epoch % 6 * 10, 1), station}});
}

void gga(log_t& log, const vessel_t& v, number_t /*turn*/) { ggaOf(log, v, "$GNGGA", "0120"); }
void pzwbGga(log_t& log, const vessel_t& v, number_t /*turn*/) {
    ggaOf(log, v, "$PZWBGGA", "0512");
}

sentence_t gllSentence(const vessel_t& v) {
    return {"$GNGLL",
            {latitude(v), northSouth(v), longitude(v), eastWest(v), time(v.clock), "A", "D"}};
}

void gll(log_t& log, const vessel_t& v, number_t /*turn*/) { log.sentence(gllSentence(v)); }

void rmc(log_t& log, const vessel_t& v, number_t turn) {
    // This older receiver restarts now and then and does not know the date at once.
    if (log.faulty() && turn % 600 == 4) {
        log.sentence(
            {"$GPRMC", {time(v.clock), "V", "", "", "", "", "", "", "060180", "", "", "N"}});
        return;
    }
    const day_t date = dayOf(v.clock / secondsOfDay);
    log.sentence({"$GPRMC",
                  {time(v.clock), "A", latitude(v), northSouth(v), longitude(v), eastWest(v),
                   number(knots(v.speed), 2, 3), number(v.course, 2, 3),
                   number(date.day * 10000 + date.month * 100 + date.year % 100, 0, 6),
                   number(variation, 2, 3), "E", "D"}});
}

void gst(log_t& log, const vessel_t& v, number_t /*turn*/) {
    log.sentence({"$GNGST",
                  {time(v.clock), number(640 + v.jitter(100, 90), 3),
                   number(412 + v.jitter(101, 60), 3), number(305 + v.jitter(102, 60), 3),
                   number(471 + wave(v.epoch, 900, 220), 1), number(355 + v.jitter(103, 40), 3),
                   number(340 + v.jitter(104, 40), 3), number(720 + v.jitter(105, 90), 3)}});
}

void gbs(log_t& log, const vessel_t& v, number_t turn) {
    sentence_t sentence("$GNGBS",
                        {time(v.clock), number(110 + v.jitter(110, 30), 2),
                         number(105 + v.jitter(111, 30), 2), number(230 + v.jitter(112, 60), 2)});
    if (turn % 2 == 0) {
        sentence.add({"25", "0.003", number(-1240 - v.jitter(113, 300), 2), "0.87"});
    } else {
        sentence.add({"", "", "", ""}); // no satellite is suspected
    }
    log.sentence(sentence);
}

void pzwbGst(log_t& log, const vessel_t& v, number_t /*turn*/) {
    log.sentence(
        {"$PZWBGST",
         {time(v.clock), number(12 + v.jitter(120, 4), 3), number(31 + v.jitter(121, 6), 3),
          number(22 + v.jitter(122, 6), 3), number(2730 + v.jitter(123, 80), 1),
          number(24 + v.jitter(124, 4), 3), number(21 + v.jitter(125, 4), 3),
          number(43 + v.jitter(126, 8), 3), number(1 + v.jitter(127, 2))}});
}

void pzwbMde(log_t& log, const vessel_t& v, number_t turn) {
    log.sentence({"$PZWBMDE",
                  {time(v.clock), number(gps[turn % 9].id, 0, 2), number(turn % 3),
                   number(413 + v.jitter(130, 30), 2), number(286 + v.jitter(131, 90), 2),
                   number(v.jitter(132, 80) - 40, 2), number(v.jitter(133, 80) - 40, 2),
                   number(v.jitter(134, 180) - 90, 2)}});
}

void dtm(log_t& log, const vessel_t& /*vessel*/, number_t turn) {
    if (turn % 2 == 0) {
        log.sentence({"$GPDTM", {"W84", "", "0.0", "N", "0.0", "E", "0.0", "W84"}});
    } else {
        log.sentence({"$GPDTM", {"999", "A", "0.0512", "S", "0.0835", "W", "-3.0", "W84"}});
    }
}

// Heading and motion

void hdt(log_t& log, const vessel_t& v, number_t /*turn*/) {
    log.sentence({"$HEHDT", {number(v.heading, 2), "T"}});
}

void ths(log_t& log, const vessel_t& v, number_t /*turn*/) {
    log.sentence({"$HETHS", {number(v.heading, 2), "A"}});
}

void rot(log_t& log, const vessel_t& v, number_t /*turn*/) {
    log.sentence({"$TIROT", {number(v.rateOfTurn / 10, 1), "A"}});
}

void vtg(log_t& log, const vessel_t& v, number_t turn) {
    const bool both = turn % 4 != 3; // otherwise km/h alone
    log.sentence({"$GNVTG",
                  {number(v.course, 2, 3), "T", number(magnetic(v.course), 2, 3), "M",
                   fieldIf(both, number(knots(v.speed), 2, 3)), fieldIf(both, "N"),
                   number(kilometresPerHour(v.speed), 2, 3), "K", "D"}});
}

void ptpsr(log_t& log, const vessel_t& v, number_t /*turn*/) {
    log.sentence({"$PTPSR",
                  {"ATT", time(v.clock, 20), "A", "M", number(v.heading, 2), number(v.pitch, 2),
                   number(2013 + v.jitter(140, 3), 3), number(8 + v.jitter(141, 4), 2),
                   number(14 + v.jitter(142, 5), 2), "-0.35", number(used(log, v, gps)),
                   number(used(log, v, glonass)), number(used(log, v, beiDou)),
                   number(used(log, v, galileo)), "0"}});
}

// Depth and wind

void dbt(log_t& log, const vessel_t& v, number_t turn) {
    const bool inFeet = turn % 3 == 0; // all units, metres alone, fathoms alone
    const bool inMetres = turn % 3 != 2;
    const bool inFathoms = turn % 3 != 1;
    log.sentence({"$SDDBT",
                  {fieldIf(inFeet, number(feet(v.depth), 2)), fieldIf(inFeet, "f"),
                   fieldIf(inMetres, number(v.depth, 2)), fieldIf(inMetres, "M"),
                   fieldIf(inFathoms, number(feet(v.depth) / 6, 2)), fieldIf(inFathoms, "F")}});
}

void dpt(log_t& log, const vessel_t& v, number_t /*turn*/) {
    log.sentence({"$SDDPT", {number(v.depth, 2), "3.20"}}, checksum_t::lowerCase);
}

void mwd(log_t& log, const vessel_t& v, number_t turn) {
    const bool both = turn % 2 == 0; // otherwise m/s alone
    log.sentence({"$WIMWD",
                  {number(v.windDirection, 2), "T", number(magnetic(v.windDirection), 2), "M",
                   fieldIf(both, number(knots(v.windSpeed), 2)), fieldIf(both, "N"),
                   number(v.windSpeed / 10, 2), "M"}});
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
    const number_t speeds[] = {speed / 10, knots(speed), kilometresPerHour(speed),
                               milesPerHour(speed)};
    static constexpr const char* units[] = {"M", "N", "K", "S"};
    log.sentence({"$WIMWV",
                  {number(angle / 10, 1), relative ? "R" : "T", number(speeds[turn % 4], 2),
                   units[turn % 4], "A"}});
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
void addPlace(sentence_t& sentence, const vessel_t& v, const vehicle_t& at, char kind, char order) {
    const number_t cos = cosine(v.heading);
    const number_t sin = sine(v.heading);
    vector_t place{(at.forward * cos - at.starboard * sin) / unity,
                   (at.forward * sin + at.starboard * cos) / unity};
    if (kind == 'P') {
        sentence.add(
            {number(range(at, 0) / 10, 2), number(direction(at.forward, at.starboard), 2)});
        return;
    }
    if (kind == 'R') { // 1e-7 degrees are six units of a position
        sentence.add({number((v.latitude + unitsNorth(place.north)) / 6, 7),
                      number((v.longitude + unitsEast(place.east)) / 6, 7)});
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
    const field_t north = number(place.north / 10, 2);
    const field_t east = number(place.east / 10, 2);
    order == 'N' ? sentence.add({north, east}) : sentence.add({east, north});
}

void psimSsb(log_t& log, const vessel_t& v, number_t turn) {
    static constexpr char layouts[][2][2] = {{"P", "H"}, {"C", "H"}, {"C", "N"}, {"C", "E"},
                                             {"U", "N"}, {"U", "E"}, {"R", "N"}};
    static constexpr const char* filters[] = {"M", "F", "P"};
    const auto& layout = layouts[turn % 7];
    const bool lost = turn % 20 == 11;
    const vehicle_t at = vehicleAt(v, turn % 2);
    sentence_t sentence("$PSIMSSB",
                        {time(v.clock, 40), turn % 2 == 0 ? "B01" : "B12", lost ? "V" : "A",
                         fieldIf(lost, "E12"), layout[0], layout[1], filters[turn % 3]});
    addPlace(sentence, v, at, *layout[0], *layout[1]);
    sentence.add({number(at.depth / 10, 2), number(35 + v.jitter(150, 20), 2)});
    switch (turn % 5) {
    case 0: sentence.add({"N", "", ""}); break;
    case 1: sentence.add({"T", number(range(at, at.depth) / 15, 2), ""}); break; // ms at 1500 m/s
    case 2: sentence.add({"D", number(at.depth / 10 + 3, 2), ""}); break;
    case 3: sentence.add({"C", number(wrap(v.heading + 700) / 10, 1), ""}); break;
    default: sentence.add({"I", number(v.roll / 2, 2), number(v.pitch / 2, 2)}); break;
    }
    log.sentence(sentence);
}

void psimLbp(log_t& log, const vessel_t& v, number_t turn) {
    static constexpr const char* objects[] = {"Ve", "R1", "R2", "R3", "R4"};
    static constexpr const char* types[] = {"C", "L", "U", "E", "R"};
    static constexpr char layouts[][3] = {"GN", "GE", "UN", "UE", "RN"};
    const number_t object = turn % 5;
    const number_t type = (turn + turn / 5) % 5;
    const vehicle_t at = object == 0 ? vehicle_t{0, 0, 3200} : vehicleAt(v, object);
    sentence_t sentence("$PSIMLBP", {time(v.clock, 70), "1", objects[object],
                                     turn % 13 == 8 ? "???" : "A", types[type]});
    addPlace(sentence, v, at, layouts[type][0], layouts[type][1]);
    sentence.add({number(at.depth / 10, 2), number(42 + v.jitter(160, 20), 2),
                  number(21 + v.jitter(161, 20), 2), number(1180 + wave(v.epoch, 400, 300), 1),
                  number(9 + v.jitter(162, 8), 2)});
    log.sentence(sentence);
}

// What others read

void vhw(log_t& log, const vessel_t& v, number_t /*turn*/) {
    const number_t throughWater = v.speed - 310;
    log.sentence(
        {"$VWVHW",
         {number(v.heading / 10, 1), "T", number(magnetic(v.heading) / 10, 1), "M",
          number(knots(throughWater), 2), "N", number(kilometresPerHour(throughWater), 2), "K"}},
        checksum_t::none);
}

void alm(log_t& log, const vessel_t& v, number_t turn) {
    const number_t week = (v.clock / secondsOfDay - 3657) / 7 % 1024; // from 1980-01-06
    log.sentence({"$GPALM",
                  {"9", number(turn % 9 + 1), number(gps[turn % 9].id, 0, 2), number(week),
                   "00,4D3A,4E,0D5F,FD58,A10D24,2E561C,A9C0D1,D5B201,0FA,003"}});
}

void vdm(log_t& log, const vessel_t& /*vessel*/, number_t turn) {
    // A tanker at anchor and a guard vessel
    static constexpr const char* payloads[] = {"13M@=rQ000wwmS@LgS@007?60000",
                                               "13M@=r@01LwwwP8LfnLK8a3B0000"};
    log.sentence({"!AIVDM", {"1", "1", "", turn % 2 == 0 ? "A" : "B", payloads[turn % 2], "0"}});
}

void txt(log_t& log, const vessel_t& /*vessel*/, number_t /*turn*/) {
    log.sentence({"$GNTXT", {"01", "01", "02", "ANTSTATUS=OK"}});
}

void winch(log_t& log, const vessel_t& v, number_t turn) {
    log.sentence({"$PWNC",
                  {number(turn + 1), number(6240 + wave(v.epoch, 180, 260), 2),
                   number(183 + v.jitter(170, 25), 2), "HOLD"}});
}

// Records that are no sentences

std::string padded(number_t value, std::size_t digits) {
    const std::string text = std::to_string(value);
    return std::string(text.size() < digits ? digits - text.size() : 0, '0') + text;
}

std::string hexadecimal(number_t value, std::size_t digits) {
    std::string text;
    for (; text.size() < digits; value /= 16) {
        text.insert(text.begin(), "0123456789ABCDEF"[value % 16]);
    }
    return text;
}

// hundredths, with a sign where they are not positive
std::string decimal(number_t value) {
    const number_t size = value < 0 ? -value : value;
    return (value < 0 ? "-" : "") + std::to_string(size / 100) + "." + padded(size % 100, 2);
}

// The sign column and the four digits of a motion record.
std::string column(number_t value) {
    return (value < 0 ? "-" : " ") + padded(value < 0 ? -value : value, 4);
}

void motion(log_t& log, const vessel_t& v, number_t turn) {
    const number_t vertical = wave(v.epoch, 8, 640);
    const char status = "UuGgHhFf"[turn < 16 ? turn / 2 : 6]; // it settles, and ends up fully aided
    log.line(":" + hexadecimal(2 + v.jitter(180, 9), 2) +
             hexadecimal(vertical < 0 ? vertical + 65536 : vertical, 4) + " " +
             column(wave(v.epoch, 8, 85)) + status + column(v.roll) + " " + column(v.pitch));
}

void tracking(log_t& log, const vessel_t& v, number_t turn) {
    static constexpr const char* months[] = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                             "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
    const day_t date = dayOf(v.clock / secondsOfDay);
    const number_t second = v.clock % secondsOfDay;
    std::string text =
        padded(date.day, 2) + " " + months[date.month - 1] + " " + std::to_string(date.year) + " " +
        padded(second / 3600, 2) + ":" + padded(second / 60 % 60, 2) + ":" +
        padded(second % 60, 2) + ":" + padded(100 + v.jitter(190, 9), 3) +
        " B:12 X:" + decimal(2500 + v.jitter(191, 99)) +
        " Y:" + decimal(-3370 + v.jitter(192, 99)) + " D:" + decimal(v.depth / 2) +
        " P:" + decimal(v.pitch) + " R:" + decimal(v.roll) + " H:" + decimal(v.heading);
    if (turn % 2 == 0) {
        text += " E:0 AP:" + decimal(wave(v.epoch, 60, 250)) +
                " AR:" + decimal(wave(v.epoch, 50, 120)) +
                " CS:0.35 CD:142.00 SX:" + decimal(v.grid().east / 10) +
                " SY:" + decimal(v.grid().north / 10) + " SH:0.80 SQ:2";
    }
    number_t sum = 0;
    for (const char c : text) {
        sum ^= c;
    }
    log.line(text + "*" + hexadecimal(sum, 2));
}

// What a caster answers when it is asked for its table.
void caster(log_t& log, const vessel_t& /*vessel*/, number_t /*turn*/) {
    static constexpr const char* lines[] = {
        "SOURCETABLE 200 OK",
        "Server: Harbour Caster/1.2",
        "Content-Type: text/plain",
        "CAS;caster.example;2101;HARBOUR;Port Authority;0;GBR;50.21;0.01;0.0.0.0;0;none",
        "NET;HARBOUR;Port Authority;B;N;http://caster.example;none;register@caster.example;none",
        "STR;PIER1;Pier One;RTCM "
        "3.2;1004(1),1012(1);2;GPS+GLO;HARBOUR;GBR;50.20;0.00;0;0;base;none;B;N;9600;",
        "STR;VRS2;Virtual;RTCM "
        "3.2;1074(1),1084(1);2;GPS+GLO+GAL;HARBOUR;GBR;50.25;-0.05;1;1;net;none;D;Y;19200;none",
        "STR;OPEN3;Old Mole;RTCM "
        "2.3;1(1),3(19);0;GPS;HARBOUR;GBR;50.18;0.02;0;0;base;none;N;N;2400;",
        "ENDSOURCETABLE"};
    for (const char* line : lines) {
        log.line(line);
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

} // namespace voyage
