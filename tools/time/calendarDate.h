// Dates of the calendar.
#pragma once

#include <string_view>

#include "kalo/time/dateTime.h"

constexpr unsigned lastYear = 9999;

/// Whether the calendar has the date, in the years up to the last one.
bool isInCalendar(const kalo::date_t& date);

/// Reads YYYY-MM-DD; false, with `out` unspecified, if `text` is anything else or the calendar does
/// not have the date.
bool parseDate(std::string_view text, kalo::date_t& out);
