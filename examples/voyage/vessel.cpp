#include "vessel.h"

#include <iterator>

namespace voyage {

namespace {

// The survey runs a line with an offset in it to the west, turns and runs it back. Both halves
// mirror each other, so the track closes however long the voyage takes.
struct leg_t {
    number_t seconds;
    number_t turn; // hundredths of a degree a second
};
constexpr leg_t legs[] = {{40, 0},  {24, -150}, {20, 0}, {24, 150}, {300, 0}, {120, -150},
                          {300, 0}, {24, -150}, {20, 0}, {24, 150}, {40, 0},  {120, -150}};

// Just east of the Greenwich meridian, in the English Channel.
constexpr number_t originLatitude = 3012345678;
constexpr number_t startLongitude = 250000;
constexpr number_t startCourse = 28500;

// Millimetres in 1000 units of latitude, and of longitude at the survey's latitude.
constexpr number_t latitudeScale = 1852;
constexpr number_t longitudeScale = 1183;

number_t turnAt(number_t epoch) {
    number_t cycle = 0;
    for (const leg_t& leg : legs) {
        cycle += leg.seconds;
    }
    number_t rest = epoch % cycle;
    const leg_t* leg = std::begin(legs);
    for (; rest >= leg->seconds; ++leg) {
        rest -= leg->seconds;
    }
    return leg->turn;
}

} // namespace

std::uint64_t random_t::next() {
    m_state += 0x9e3779b97f4a7c15U;
    std::uint64_t mixed = m_state;
    mixed = (mixed ^ (mixed >> 30U)) * 0xbf58476d1ce4e5b9U;
    mixed = (mixed ^ (mixed >> 27U)) * 0x94d049bb133111ebU;
    return mixed ^ (mixed >> 31U);
}

number_t random_t::below(number_t span) {
    return static_cast<number_t>(next() % static_cast<std::uint64_t>(span));
}

// A rational approximation, right to two parts in a thousand.
number_t sine(number_t angle) {
    const number_t inside = wrap(angle);
    const number_t half = inside % (fullCircle / 2);
    const number_t product = half * (fullCircle / 2 - half);
    const number_t value = 4 * unity * product / (405000000 - product);
    return inside < fullCircle / 2 ? value : -value;
}

number_t cosine(number_t angle) { return sine(angle + fullCircle / 4); }

number_t squareRoot(number_t square) {
    number_t root = 0;
    for (number_t bit = number_t{1} << 30; bit != 0; bit /= 2) {
        if ((root + bit) * (root + bit) <= square) {
            root += bit;
        }
    }
    return root;
}

number_t direction(number_t ahead, number_t starboard) {
    const number_t length = squareRoot(ahead * ahead + starboard * starboard);
    number_t low = 0;
    number_t high = fullCircle / 2;
    while (high - low > 1) { // the cosine falls from bow to stern
        const number_t middle = (low + high) / 2;
        (cosine(middle) * length >= ahead * unity ? low : high) = middle;
    }
    return starboard < 0 ? wrap(-low) : low;
}

number_t wrap(number_t angle) { return (angle % fullCircle + fullCircle) % fullCircle; }

number_t wave(number_t seconds, number_t period, number_t amplitude) {
    return sine(seconds % period * fullCircle / period) * amplitude / unity;
}

number_t daysOf(const day_t& date) {
    // Years that begin in March have their leap day at the end.
    const number_t year = date.month > 2 ? date.year : date.year - 1;
    const number_t month = (date.month + 9) % 12;
    return year * 365 + year / 4 - year / 100 + year / 400 + (month * 306 + 5) / 10 + date.day -
           719469;
}

day_t dayOf(number_t days) {
    day_t date{1970 + days / 366, 1, 1};
    while (daysOf({date.year + 1, 1, 1}) <= days) {
        ++date.year;
    }
    while (date.month < 12 && daysOf({date.year, date.month + 1, 1}) <= days) {
        ++date.month;
    }
    date.day += days - daysOf(date);
    return date;
}

number_t unitsNorth(number_t millimetres) { return millimetres * 1000 / latitudeScale; }
number_t unitsEast(number_t millimetres) { return millimetres * 1000 / longitudeScale; }

vessel_t::vessel_t(std::uint64_t voyageSeed, number_t start)
    : seed(voyageSeed), clock(start), latitude(originLatitude), longitude(startLongitude),
      course(startCourse) {
    sense();
    rateOfTurn = 0;
}

void vessel_t::step() {
    course = wrap(course + turnAt(epoch));
    latitude += unitsNorth(speed * cosine(course) / unity);
    longitude += unitsEast(speed * sine(course) / unity);
    ++epoch;
    ++clock;
    sense();
}

void vessel_t::sense() {
    const number_t before = heading;
    heading = wrap(course + 350 + wave(epoch, 40, 80)); // the current sets it to port
    rateOfTurn = (wrap(heading - before + fullCircle / 2) - fullCircle / 2) * 60;
    speed = 4600 + wave(epoch, 97, 250) + jitter(1, 20);
    depth = 4235 + wave(epoch, 211, 380) + wave(epoch, 7, 25) + jitter(2, 8);
    roll = wave(epoch, 9, 310) + jitter(3, 40);
    pitch = wave(epoch, 7, 140) - jitter(4, 30);
    windDirection = wrap(22500 + wave(epoch, 600, 900) + jitter(5, 300));
    windSpeed = 8200 + wave(epoch, 120, 1600) + jitter(6, 900);
}

number_t vessel_t::jitter(number_t channel, number_t span) const {
    const auto place = static_cast<std::uint64_t>(epoch * 1024 + channel);
    return random_t(seed ^ (place * 0xd1342543de82ef95U)).below(span);
}

vector_t vessel_t::grid() const {
    return {(latitude - originLatitude) * latitudeScale / 1000, longitude * longitudeScale / 1000};
}

} // namespace voyage
