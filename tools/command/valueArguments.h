// Values of options: dates, times, numbers, places. Each function throws `usageError_t` if the text
// is not such a value.
#pragma once

#include <string>

#include "kalo/time/dateTime.h"
#include "kalo/time/gpsTime.h"
#include "tools/analysis/thinning.h"
#include "tools/analysis/voyage.h"
#include "tools/command/arguments.h"
#include "tools/record/range.h"

/// YYYY-MM-DD.
kalo::date_t dateOfArgument(const std::string& text);

/// The first instant of a period, or its last one, in Unix seconds. The text is an instant, or a
/// day, which is a period of its own.
double boundOfArgument(const std::string& text, bool isLast);

/// Leap seconds as receivers broadcast them.
kalo::gps2utc_t leapOfArgument(const std::string& text);

/// "LATITUDE,LONGITUDE" in degrees.
place_t placeOfArgument(const std::string& text);

/// "BEGIN-END" in bytes, or "BEGIN-" up to the end; both numbers may have a unit: KiB, MiB or GiB.
byteRange_t rangeOfArgument(const std::string& text);

/// A number of threads, or "auto": one for each processor.
unsigned jobsOfArgument(const std::string& text);

/// "10s" or "50m".
void takeEvery(const std::string& text, thinningOptions_t& out);

/// An option whose value is a number above 0.
option_t positive(const char* names, const char* operand, double& out, const char* help);
