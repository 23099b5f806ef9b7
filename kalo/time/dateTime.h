// Calendar dates and times of day, all in UTC, and their conversion to and from Unix timestamps.
// kalo/time/timeUtil.h completes two-digit years.
#pragma once

#include <cstdint>

#include "kalo/export.h"

namespace kalo {

/// A calendar date. Ranges are not checked: decoders store what the record says.
struct date_t {
    std::uint32_t year = 0;  ///< full year AD: 2024, not 24
    std::uint32_t month = 0; ///< 1 (January) to 12
    std::uint32_t day = 0;   ///< 1 to 31
};

/// A UTC time of day. Ranges are not checked: decoders store what the record says.
struct timeOfDay_t {
    std::uint32_t hour = 0;   ///< 0 to 23
    std::uint32_t minute = 0; ///< 0 to 59
    double second = 0;        ///< with its fraction; 60 or more only in a leap second
};

/// A date and a UTC time of day together.
///
/// A Unix timestamp is a `double`: seconds since 1970-01-01 00:00:00 UTC with their fraction, leap
/// seconds not counted. The conversions never fail, and do not depend on the process's time zone.
struct KALO_EXPORT dateTime_t {
    date_t date;
    timeOfDay_t timeOfDay;

    dateTime_t() = default;
    dateTime_t(const date_t& day, const timeOfDay_t& time);

    /// Breaks a Unix timestamp down into UTC calendar fields.
    ///
    /// Whole seconds are truncated toward zero: before 1970 the fraction is negative. A timestamp
    /// before the year 0 gives the first second of that year, one after the year 4294967295 the
    /// last second of that year. A timestamp that is not finite gives 1970-01-01 00:00 and becomes
    /// the second.
    explicit dateTime_t(double timestamp);

    /// The Unix timestamp: the inverse of the constructor, except for the rounding of the fraction.
    ///
    /// A field out of range carries into the next larger one: second 60 is second 0 of the next
    /// minute, and day 0 is the last day of the previous month. If the second is not finite, it is
    /// the result.
    double toTimestamp() const;
};

} // namespace kalo
