// `kalo time`: instants, GPS weeks and seconds, and Unix seconds, each into the others.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "kalo/time/gpsTime.h"

struct timeOptions_t {
    std::vector<std::string> texts;      ///< empty: the lines of standard input
    std::optional<kalo::gps2utc_t> leap; ///< instead of the library's table of leap seconds
};

/// The parameters in "deltaTls,deltaTlsf,wnLsf,dn"; false when it is not that.
bool parseLeap(const std::string& text, kalo::gps2utc_t& out);

/// Returns the exit status.
int timeCommand(const timeOptions_t& options);
