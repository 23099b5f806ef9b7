// The units of the sentences in SI, each factor once; not installed.
#pragma once

namespace kalo {

constexpr double pi = 3.141592653589793;

/// Metres per second; the knot to six decimals, not 1852 / 3600.
constexpr double knot = 0.514444;
/// Metres per second; exactly 1609.344 / 3600.
constexpr double statuteMilePerHour = 0.44704;
/// Kilometres per hour in one metre per second: a divisor.
constexpr double kilometresPerHour = 3.6;

// The order of the operations is part of the results.
constexpr double radiansFromDegrees(double degrees) { return degrees * pi / 180; }

/// The survey foot: 1200 / 3937 metres.
constexpr double metresFromFeet(double feet) { return feet * 1200 / 3937; }
constexpr double metresFromFathoms(double fathoms) { return metresFromFeet(fathoms) * 6; }

} // namespace kalo
