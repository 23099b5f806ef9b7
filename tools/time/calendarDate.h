// Dates of the calendar.
#pragma once

#include <string_view>

#include "kalo/time/dateTime.h"

/// Whether the calendar has the date, in the years 0 to 9999.
bool isInCalendar(const kalo::date_t& date);

/// Reads YYYY-MM-DD; false, with `out` unspecified, for anything else and for a date that the
/// calendar does not have.
bool parseDate(std::string_view text, kalo::date_t& out);
