// `kalo time`: converts between UTC, GPS week and seconds, and Unix seconds.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "kalo/time/gpsTime.h"

struct timeOptions_t {
    std::vector<std::string> texts;      ///< empty: the lines of standard input
    std::optional<kalo::gps2utc_t> leap; ///< instead of the library's table of leap seconds
};

/// The parameters in "deltaTls,deltaTlsf,wnLsf,dn"; false if the text is anything else.
bool parseLeap(const std::string& text, kalo::gps2utc_t& out);

/// Returns the exit status.
int timeCommand(const timeOptions_t& options);
