// GPS time and its conversion to and from Unix time, by the library's table of leap seconds or by
// the parameters that the satellites broadcast.
#pragma once

#include <cstdint>

#include "kalo/export.h"

namespace kalo {

/// The UTC parameters of the GPS navigation message (IS-GPS-200).
struct gps2utc_t {
    std::uint32_t deltaTls = 0;  ///< GPS minus UTC now, whole seconds
    std::uint32_t deltaTlsf = 0; ///< GPS minus UTC after the scheduled leap second
    std::uint32_t wnLsf = 0;     ///< GPS week of that leap second modulo 256, 0 to 255
    std::uint32_t dn = 0;        ///< day of that week at whose end it takes effect, 1 (Sunday) to 7
};

/// A GPS week and the seconds into it.
///
/// Conversions never fail. They count whole Unix seconds modulo 2^32, so that they are right from
/// 1980-01-06 (GPS week 0) to early 2106; other instants wrap around and give meaningless results.
struct KALO_EXPORT gpsTime_t {
    std::uint32_t week = 0; ///< full week number since 1980-01-06, not modulo 1024
    double seconds = 0;     ///< into the week, with their fraction

    gpsTime_t() = default;
    gpsTime_t(unsigned weekNumber, double secondsOfWeek);

    /// The GPS time of a Unix timestamp. Adds `deltaTls` before the end of the scheduled day, and
    /// `deltaTlsf` after it. As `wnLsf` is a week modulo 256, the count starts again every 256
    /// weeks. A timestamp that is not finite counts as 0.
    gpsTime_t(double timestamp, const gps2utc_t& parameters);

    /// The Unix timestamp, by a table of the leap seconds up to 2017-01-01 that is part of the
    /// library. A leap second has the same timestamp as the second after it.
    double toUnix() const;

    /// The Unix timestamp, by the given parameters. Subtracts `deltaTlsf` from the end of the
    /// scheduled day to the end of that week, and `deltaTls` at all other times.
    ///
    /// Caveat: parameters broadcast before a leap second are wrong after that week: results are one
    /// second late.
    double toUnix(const gps2utc_t& parameters) const;
};

} // namespace kalo
