// Two-digit years against the system clock.
#pragma once

#include "kalo/export.h"

namespace kalo {

/// Two-digit years from this one on belong to the century before the current one: the cutoff of
/// the library's own date decoders. With it 70 to 99 are 1970 to 1999 until the clock shows 2100.
inline constexpr unsigned defaultTwoDigitYearCutoff = 70;

/// The first year of the century that the system clock stands in: 2000 in the years 2000 to 2099.
KALO_EXPORT unsigned currentCentury();

/// Completes a year of at most two digits; a year above 99 passes through.
/// Caveat: the result depends on the system clock, which is read on every call.
KALO_EXPORT unsigned twoDigitYearToAD(unsigned year, unsigned cutoff);

} // namespace kalo
