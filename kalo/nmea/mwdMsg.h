// MWD, the direction and speed of the wind.
#pragma once

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// The direction and speed of the wind.
///
///     0 address  1 true direction  2 T  3 magnetic direction  4 M  5 speed (knots)  6 N
///     7 speed (m/s)  8 M
///
/// The letters after the directions are not read.
class KALO_EXPORT mwdMsg_t : public nmeaMsg_t {
public:
    explicit mwdMsg_t(const nmeaFormat_t& format);
    ~mwdMsg_t() override;

    /// Radians from true north.
    bool decodeTrueWindDirection(double& out) const;
    /// Radians from magnetic north.
    bool decodeMagneticWindDirection(double& out) const;
    /// Metres per second: from the knots if their number is well formed and followed by `N`,
    /// otherwise from the m/s if their number is followed by `M`.
    ///
    /// Caveat: unit letters are case-sensitive: `n` and `m` do not match.
    bool decodeWindSpeed(double& out) const;
};

} // namespace kalo
