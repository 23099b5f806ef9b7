// Dates that exist.
#pragma once

#include <string_view>

#include "kalo/time/dateTime.h"

/// Whether the calendar has the date, in the years 0 to 9999.
bool isInCalendar(const kalo::date_t& date);

/// The date in `text`, as YYYY-MM-DD; false when it is not in the calendar.
bool parseDate(std::string_view text, kalo::date_t& out);
