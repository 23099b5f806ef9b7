// Any sequence of calls gives what the conversions give for the values that were set last.
#include <optional>

#include "fuzz/target.h"
#include "kalo/time/timeContext.h"

void fuzz::timeContext(std::string_view input) {
    draw_t draw(input);
    kalo::timeContext_t context;
    std::optional<kalo::gps2utc_t> parameters;
    std::optional<kalo::date_t> date;
    std::optional<unsigned> week;
    double stored = 0;
    const auto gpsToUnix = [&](const kalo::gpsTime_t& time) {
        return parameters ? time.toUnix(*parameters) : time.toUnix();
    };
    while (!draw.isEmpty()) {
        const double number = draw.real();
        switch (draw.below(8)) {
        case 0:
            parameters = {draw.below(60), draw.below(60), draw.below(255),
                          draw.take<std::uint32_t>()};
            context.setGps2Utc(*parameters);
            break;
        case 1:
            date = {draw.take<std::uint32_t>(), draw.below(14), draw.below(40)};
            context.setDate(*date);
            break;
        case 2:
            week = draw.take<std::uint32_t>();
            context.setGpsWeek(*week);
            break;
        case 3:
            date = kalo::dateTime_t(number).date;
            context.setDateFromUnix(number);
            break;
        case 4:
            stored = number;
            context.setDefaultTimestamp(number);
            break;
        case 5: {
            const kalo::gpsTime_t time(draw.take<std::uint32_t>(), number);
            require(hasSameBits(context.gpsTimeToUnix(time), gpsToUnix(time)), "GPS time");
            break;
        }
        case 6:
            require(hasSameBits(context.gpsWeekSecondsToUnix(number),
                                week ? gpsToUnix({*week, number}) : 0.0),
                    "seconds of the week that was set");
            break;
        default: {
            const kalo::timeOfDay_t time{draw.below(30), draw.take<std::uint32_t>(), number};
            require(hasSameBits(context.timeOfDayToUnix(time),
                                date ? kalo::dateTime_t(*date, time).toTimestamp() : 0.0),
                    "time of day on the date that was set");
        }
        }
        require(hasSameBits(context.defaultTimestamp(), stored), "the stored timestamp");
    }
}
