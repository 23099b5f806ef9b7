#include "kalo/time/dateTime.h"

#include <cmath>

#include "kalo/time/calendar.h"

namespace kalo {

namespace {

// Unix seconds of 0000-01-01 00:00:00 and 4294967295-12-31 23:59:59, the ends of what `date_t`
// can name.
constexpr std::int64_t firstSecond = -62167219200;
constexpr std::int64_t lastSecond = 135536014634284799;

// The bounds are compared as doubles, since the cast of a double beyond them may be undefined.
std::int64_t toSeconds(double whole) {
    if (whole <= static_cast<double>(firstSecond)) {
        return firstSecond;
    }
    return whole >= static_cast<double>(lastSecond) ? lastSecond : static_cast<std::int64_t>(whole);
}

} // namespace

dateTime_t::dateTime_t(const date_t& day, const timeOfDay_t& time) : date(day), timeOfDay(time) {}

dateTime_t::dateTime_t(double timestamp) : date{1970, 1, 1} {
    if (!std::isfinite(timestamp)) {
        timeOfDay.second = timestamp;
        return;
    }
    const double whole = std::trunc(timestamp);
    const std::int64_t seconds = toSeconds(whole);
    std::int64_t secondOfDay = seconds % secondsPerDay;
    if (secondOfDay < 0) {
        secondOfDay += secondsPerDay;
    }
    date = dateFromDays((seconds - secondOfDay) / secondsPerDay);
    timeOfDay.hour = static_cast<std::uint32_t>(secondOfDay / 3600);
    timeOfDay.minute = static_cast<std::uint32_t>(secondOfDay / 60 % 60);
    timeOfDay.second = static_cast<double>(secondOfDay % 60) + (timestamp - whole);
}

double dateTime_t::toTimestamp() const {
    if (!std::isfinite(timeOfDay.second)) {
        return timeOfDay.second;
    }
    const double whole = std::trunc(timeOfDay.second);
    const std::int64_t minutes = daysFromDate(date) * (secondsPerDay / 60) +
                                 std::int64_t{timeOfDay.hour} * 60 + timeOfDay.minute;
    // Whole seconds are added as integers, so that only the fraction rounds; more of them than the
    // calendar has are no integer any more.
    const bool isLarge = std::fabs(whole) > static_cast<double>(lastSecond);
    const std::int64_t seconds = minutes * 60 + (isLarge ? 0 : static_cast<std::int64_t>(whole));
    return static_cast<double>(seconds) + (isLarge ? whole : timeOfDay.second - whole);
}

} // namespace kalo
