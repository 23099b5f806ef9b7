// Which texts are accepted as a time or a position. The library reads numbers by the rules of
// streams and coordinates by fixed columns, and would make wrong values of some damaged texts.
#pragma once

#include <cmath>
#include <string>

/// Six digits, then perhaps a point and digits.
bool isTimeOfDay(const std::string& text);

/// Four digits in front of the point, minutes below 60, at most 90 degrees.
bool isLatitude(const std::string& text);

/// Five digits in front of the point, minutes below 60, at most 180 degrees.
bool isLongitude(const std::string& text);

// For sentences that send plain degrees: checks only the range of the angle in radians.
bool isInLatitudes(double radians);
bool isInLongitudes(double radians);

inline bool isFinite(double value) { return std::isfinite(value); }
