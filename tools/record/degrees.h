// Degrees and radians.
#pragma once

constexpr double halfTurn = 3.141592653589793; ///< pi
constexpr double degreesPerRadian = 180 / halfTurn;
constexpr double radiansPerDegree = halfTurn / 180;

/// Rounded as the library does, so that its results compare equal.
constexpr double radiansOf(double degrees) { return degrees * halfTurn / 180; }
