// Arithmetic of the proleptic Gregorian calendar, for the sources beside it; not installed.
// The one place where days become years, months and days, independent of the process's time zone.
#pragma once

#include <cstdint>

#include "kalo/time/dateTime.h"

namespace kalo {

constexpr std::int64_t secondsPerDay = 86400;

/// Days from 1970-01-01 to the given date. A month outside 1 to 12 carries into the year, a day
/// outside the month into the month.
std::int64_t daysFromDate(const date_t& date);

/// The date that lies `days` after 1970-01-01; `days` must lie in the years 0 to 4294967295.
date_t dateFromDays(std::int64_t days);

} // namespace kalo
