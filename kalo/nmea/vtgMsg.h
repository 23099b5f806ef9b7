// VTG, course and speed over ground.
#pragma once

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// The course and speed over ground.
///
///     0 address  1 true course  2 T  3 magnetic course  4 M  5 speed (knots)  6 N
///     7 speed (km/h)  8 K  9 mode (version 2.3 on)
///
/// The letters after the courses are not read.
class KALO_EXPORT vtgMsg_t : public nmeaMsg_t {
public:
    explicit vtgMsg_t(const nmeaFormat_t& format);
    ~vtgMsg_t() override;

    /// Radians from true north.
    bool decodeTrueCourseOverGround(double& out) const;
    /// Radians from magnetic north.
    bool decodeMagneticCourseOverGround(double& out) const;
    /// Metres per second: from the knots if their number is well formed and followed by `N`,
    /// otherwise from the km/h if their number is followed by `K`.
    ///
    /// Caveat: unit letters are case-sensitive: `n` and `k` do not match.
    bool decodeSpeedOverGround(double& out) const;
    /// Mode letter, as sent.
    bool decodeFixMode(char& out) const;
    /// Whether the sentence has a field for the mode letter.
    bool hasFixMode() const;
};

} // namespace kalo
