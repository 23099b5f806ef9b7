// GPS time from and to Unix time, for any numbers.
#include <cmath>

#include "fuzz/target.h"
#include "kalo/time/gpsTime.h"

namespace {

using fuzz::require;

constexpr double secondsPerWeek = 604800;
constexpr double gpsEpoch = 315964800;

} // namespace

void fuzz::gpsTime(std::string_view input) {
    draw_t draw(input);
    kalo::gps2utc_t parameters;
    const bool isUsual = draw.below(4) != 0;
    parameters.deltaTls = isUsual ? draw.below(60) : draw.take<std::uint32_t>();
    parameters.deltaTlsf = isUsual ? parameters.deltaTls : draw.take<std::uint32_t>();
    parameters.wnLsf = isUsual ? draw.below(256) : draw.take<std::uint32_t>();
    parameters.dn = isUsual ? draw.below(8) : draw.take<std::uint32_t>();

    const double timestamp = draw.real();
    const kalo::gpsTime_t time(timestamp, parameters);
    require(time.seconds > -1 && time.seconds < secondsPerWeek, "seconds of the week");
    const double again = time.toUnix(parameters);
    constexpr double firstInstant = gpsEpoch;
    constexpr double lastInstant = 4294967296.0 - 100;
    if (isUsual && timestamp >= firstInstant && timestamp <= lastInstant) {
        require(std::fabs(again - timestamp) < 1e-6, "the way back");
    }

    const kalo::gpsTime_t any{draw.take<std::uint32_t>(), draw.real()}; // drawn in this order
    const double byTable = any.toUnix();
    const double byParameters = any.toUnix(parameters);
    require(std::isfinite(byTable) == std::isfinite(any.seconds) &&
                std::isfinite(byParameters) == std::isfinite(any.seconds),
            "finite if the seconds are");
    const kalo::gpsTime_t early(any.week, 0);
    const kalo::gpsTime_t late(any.week, std::fabs(std::fmod(any.seconds, secondsPerWeek)));
    require(!std::isfinite(any.seconds) || late.toUnix() >= early.toUnix() - 1,
            "time goes on, but for a leap second");
}
