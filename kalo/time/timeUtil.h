// Completes two-digit years by the system clock.
#pragma once

#include "kalo/export.h"

namespace kalo {

/// The cutoff that the library's date decoders use: two-digit years from this one on belong to the
/// previous century. Until the clock shows 2100, 70 to 99 are 1970 to 1999, and 0 to 69 are 2000 to
/// 2069.
inline constexpr unsigned defaultTwoDigitYearCutoff = 70;

/// The first year of the current century by the system clock: 2000 in the years 2000 to 2099.
KALO_EXPORT unsigned currentCentury();

/// Completes a year of two digits: below `cutoff` it belongs to the current century, otherwise to
/// the previous one. A year above 99 is returned unchanged.
///
/// Caveat: the result depends on the system clock, which is read on every call.
KALO_EXPORT unsigned twoDigitYearToAD(unsigned year, unsigned cutoff);

} // namespace kalo
