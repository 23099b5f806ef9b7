// GPS time and its way to and from Unix time, with the library's table of leap seconds or with the
// parameters that a receiver broadcasts.
#pragma once

#include <cstdint>

#include "kalo/export.h"

namespace kalo {

/// The UTC parameters of the GPS navigation message (IS-GPS-200).
struct gps2utc_t {
    std::uint32_t deltaTls = 0;  ///< GPS minus UTC in force, whole seconds
    std::uint32_t deltaTlsf = 0; ///< GPS minus UTC after the scheduled leap second
    std::uint32_t wnLsf = 0;     ///< GPS week of that leap second modulo 256, 0 to 255
    std::uint32_t dn = 0;        ///< day of that week at whose end it takes effect, 1 (Sunday) to 7
};

/// A GPS week and the seconds into it.
///
/// Whole seconds are counted modulo 2^32, which spans 1980-01-06 (GPS week 0) to early 2106; what
/// lies outside wraps and carries no meaning. Nothing fails.
struct KALO_EXPORT gpsTime_t {
    std::uint32_t week = 0; ///< from 1980-01-06 on, not reduced modulo 1024
    double seconds = 0;     ///< into the week, with their fraction

    gpsTime_t() = default;
    gpsTime_t(unsigned weekNumber, double secondsOfWeek);

    /// The GPS time of a Unix timestamp. From the end of the scheduled day on, for the rest of the
    /// 256 weeks that the week number can tell apart, `deltaTlsf` is added, before it `deltaTls`.
    /// A timestamp that is not finite counts as 0.
    gpsTime_t(double timestamp, const gps2utc_t& parameters);

    /// The Unix timestamp by the table of leap seconds up to 2017-01-01, fixed when the library was
    /// built. An inserted leap second and the second behind it have the same timestamp.
    double toUnix() const;

    /// The Unix timestamp with the given parameters. `deltaTlsf` counts from the end of the
    /// scheduled day to the end of its week alone, `deltaTls` otherwise. Caveat: after that week
    /// parameters of before the leap second give a time one second late.
    double toUnix(const gps2utc_t& parameters) const;
};

} // namespace kalo
