// Which texts count as a time or a place. The library reads numbers by the rules of streams and
// coordinates by fixed columns; logs hold damaged texts that become wrong values that way.
#pragma once

#include <cmath>
#include <string>

/// Six digits, then perhaps a point and digits.
bool isTimeOfDay(const std::string& text);

/// Four digits in front of the point, minutes below 60, at most 90 degrees.
bool isLatitude(const std::string& text);

/// Five digits in front of the point, minutes below 60, at most 180 degrees.
bool isLongitude(const std::string& text);

// The same of angles in radians, for sentences that send plain degrees: only the range.
bool isInLatitudes(double radians);
bool isInLongitudes(double radians);

inline bool isFinite(double value) { return std::isfinite(value); }
