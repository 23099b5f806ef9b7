#include "tools/time/instantText.h"

#include <cmath>

#include <fmt/format.h>

#include "kalo/time/dateTime.h"

std::string instantText(double unixSeconds) {
    constexpr double milli = 1e-3;
    const double whole = std::floor(unixSeconds + milli / 2);
    const int fraction = static_cast<int>(std::lround((unixSeconds - whole) / milli));
    const kalo::dateTime_t instant(whole);
    const kalo::date_t date = instant.date;
    const kalo::timeOfDay_t time = instant.timeOfDay;
    std::string text = fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02.0f}", date.year, date.month,
                                   date.day, time.hour, time.minute, time.second);
    if (fraction > 0) {
        text += fmt::format(".{:03}", fraction);
        text.erase(text.find_last_not_of('0') + 1);
    }
    return text + 'Z';
}

std::string durationText(double seconds) {
    constexpr double minute = 60;
    constexpr double hour = 3600;
    constexpr double day = 86400;
    if (seconds < minute) {
        return fmt::format("{:.1f} s", seconds);
    }
    const auto parts = [&](double large, const char* largeName, double small,
                           const char* smallName) {
        const double rounded = std::round(seconds / small) * small;
        return fmt::format("{:.0f} {} {:.0f} {}", std::floor(rounded / large), largeName,
                           std::fmod(rounded, large) / small, smallName);
    };
    return seconds < hour  ? parts(minute, "min", 1, "s")
           : seconds < day ? parts(hour, "h", minute, "min")
                           : parts(day, "d", hour, "h");
}
