// Timestamps become dates and dates timestamps, for any numbers.
#include <cmath>

#include "fuzz/target.h"
#include "kalo/time/dateTime.h"

namespace {

using fuzz::require;

// Days since 1970-01-01, counted in cycles of 400 years that begin with March.
std::int64_t daysOf(const kalo::date_t& date) {
    const std::int64_t months = std::int64_t{date.year} * 12 + date.month - 3;
    const std::int64_t year = months >= 0 ? months / 12 : (months - 11) / 12;
    const std::int64_t month = months - year * 12;
    const auto floor = [](std::int64_t number, std::int64_t by) {
        return number >= 0 ? number / by : (number - by + 1) / by;
    };
    return year * 365 + floor(year, 4) - floor(year, 100) + floor(year, 400) +
           (153 * month + 2) / 5 + date.day - 1 - 719468;
}

void checkTimestamp(double timestamp) {
    const kalo::dateTime_t broken(timestamp);
    const kalo::date_t& date = broken.date;
    const kalo::timeOfDay_t& time = broken.timeOfDay;
    require(date.month >= 1 && date.month <= 12 && date.day >= 1 && date.day <= 31 &&
                time.hour < 24 && time.minute < 60,
            "a date of the calendar");
    constexpr double mostExact = 1e15;
    if (std::fabs(timestamp) < mostExact && timestamp > -62167219200.0) {
        require(std::fabs(time.second) < 60, "seconds of the minute");
        const double rounding = std::ldexp(std::fabs(timestamp) + 60, -52);
        require(std::fabs(broken.toTimestamp() - timestamp) <= rounding, "the way back");
    }
}

} // namespace

void fuzz::calendar(std::string_view input) {
    draw_t draw(input);
    checkTimestamp(draw.real());
    kalo::date_t date;
    const bool isUsual = draw.below(2) == 0;
    date.year = isUsual ? draw.take<std::uint16_t>() : draw.take<std::uint32_t>();
    date.month = isUsual ? draw.below(16) : draw.take<std::uint32_t>();
    date.day = isUsual ? draw.below(40) : draw.take<std::uint32_t>();
    const double midnight = kalo::dateTime_t(date, {}).toTimestamp();
    require(midnight == static_cast<double>(daysOf(date) * 86400), "the days of the calendar");
    const kalo::timeOfDay_t time{draw.take<std::uint32_t>(), draw.take<std::uint32_t>(),
                                 draw.real()};
    const double timestamp = kalo::dateTime_t(date, time).toTimestamp();
    require(std::isfinite(timestamp) || hasSameBits(timestamp, time.second),
            "never infinite by itself");
    checkTimestamp(timestamp);
}
