// Calendar dates and times of day, all UTC, and their way to and from Unix timestamps.
// kalo/time/timeUtil.h completes two-digit years.
#pragma once

#include <cstdint>

#include "kalo/export.h"

namespace kalo {

/// A calendar date. Nothing checks the ranges: decoders store what the record says.
struct date_t {
    std::uint32_t year = 0;  ///< full year AD: 2024, not 24
    std::uint32_t month = 0; ///< 1 (January) to 12
    std::uint32_t day = 0;   ///< 1 to 31
};

/// A UTC time of day. Nothing checks the ranges: decoders store what the record says.
struct timeOfDay_t {
    std::uint32_t hour = 0;   ///< 0 to 23
    std::uint32_t minute = 0; ///< 0 to 59
    double second = 0;        ///< with its fraction; 60 or more only in an inserted leap second
};

/// A date and a UTC time of day together.
///
/// A Unix timestamp is a `double`: seconds since 1970-01-01 00:00:00 UTC with their fraction, leap
/// seconds not counted. Conversions neither ask the process for its time zone nor fail.
struct KALO_EXPORT dateTime_t {
    date_t date;
    timeOfDay_t timeOfDay;

    dateTime_t() = default;
    dateTime_t(const date_t& day, const timeOfDay_t& time);

    /// Breaks a Unix timestamp down into UTC calendar fields.
    ///
    /// The fraction is what truncation toward zero leaves, so it is negative before 1970. Whole
    /// seconds before the year 0 give its first second, those after the year 4294967295 its last
    /// second. A timestamp that is not finite gives 1970-01-01 00:00 with itself as the second.
    explicit dateTime_t(double timestamp);

    /// The Unix timestamp: the inverse of the constructor, up to the rounding of the fraction.
    ///
    /// Fields out of range carry into the next larger one: second 60 is second 0 of the next
    /// minute, day 0 the last day of the month before. A second that is not finite is the result.
    double toTimestamp() const;
};

} // namespace kalo
