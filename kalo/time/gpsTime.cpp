#include "kalo/time/gpsTime.h"

#include <cmath>

#include "kalo/time/calendar.h"

namespace kalo {

namespace {

constexpr std::uint32_t gpsEpoch = 315964800; // Unix time of 1980-01-06
constexpr auto secondsOfDay = static_cast<std::uint32_t>(secondsPerDay);
constexpr std::uint32_t secondsPerWeek = 604800;
constexpr std::uint32_t leapWeeks = 256;
constexpr std::uint32_t leapCycle = leapWeeks * secondsPerWeek;

struct leapRecord_t {
    std::uint32_t from;   // Unix time
    std::uint32_t offset; // GPS minus UTC from then on
};

// Newest first. Source: the announcements of the International Earth Rotation and Reference Systems
// Service, Bulletin C.
constexpr leapRecord_t leapRecords[] = {
    {1483228800, 18}, // 2017-01-01
    {1435708800, 17}, // 2015-07-01
    {1341100800, 16}, // 2012-07-01
    {1230768000, 15}, // 2009-01-01
    {1136073600, 14}, // 2006-01-01
    {915148800, 13},  // 1999-01-01
    {867715200, 12},  // 1997-07-01
    {820454400, 11},  // 1996-01-01
    {773020800, 10},  // 1994-07-01
    {741484800, 9},   // 1993-07-01
    {709948800, 8},   // 1992-07-01
    {662688000, 7},   // 1991-01-01
    {631152000, 6},   // 1990-01-01
    {567993600, 5},   // 1988-01-01
    {489024000, 4},   // 1985-07-01
    {425865600, 3},   // 1983-07-01
    {394329600, 2},   // 1982-07-01
    {362793600, 1},   // 1981-07-01
};

// The whole number modulo 2^32, as the conversion of an integer would give it.
std::uint32_t wrapped(double whole) {
    constexpr double span = 4294967296.0;
    const double rest = std::fmod(whole, span);
    return static_cast<std::uint32_t>(rest < 0 ? rest + span : rest);
}

// The GPS instant on the Unix scale, without leap seconds.
double withoutLeapSeconds(const gpsTime_t& time) {
    return static_cast<double>(time.week * secondsPerWeek + gpsEpoch) + time.seconds;
}

} // namespace

gpsTime_t::gpsTime_t(unsigned weekNumber, double secondsOfWeek)
    : week(weekNumber), seconds(secondsOfWeek) {}

gpsTime_t::gpsTime_t(double timestamp, const gps2utc_t& parameters) {
    const double whole = std::isfinite(timestamp) ? std::trunc(timestamp) : 0;
    const double fraction = std::isfinite(timestamp) ? timestamp - whole : 0;
    std::uint32_t count = wrapped(whole) - gpsEpoch;
    const std::uint32_t change = parameters.wnLsf * secondsPerWeek + parameters.dn * secondsOfDay;
    count += count % leapCycle < change ? parameters.deltaTls : parameters.deltaTlsf;
    week = count / secondsPerWeek;
    seconds = static_cast<double>(count % secondsPerWeek) + fraction;
}

double gpsTime_t::toUnix() const {
    const double instant = withoutLeapSeconds(*this);
    for (const leapRecord_t& record : leapRecords) {
        if (instant - record.offset >= record.from) {
            return instant - record.offset;
        }
    }
    return instant;
}

double gpsTime_t::toUnix(const gps2utc_t& parameters) const {
    const bool after = week % leapWeeks == parameters.wnLsf &&
                       std::trunc(seconds) >= double{secondsOfDay} * parameters.dn;
    return withoutLeapSeconds(*this) - (after ? parameters.deltaTlsf : parameters.deltaTls);
}

} // namespace kalo
