// MWV, the speed and angle of the wind.
#pragma once

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// The angle and speed of the wind, relative or true.
///
///     0 address  1 wind angle  2 reference letter  3 speed  4 unit of the speed  5 status letter
class KALO_EXPORT mwvMsg_t : public nmeaMsg_t {
public:
    explicit mwvMsg_t(const nmeaFormat_t& format);
    ~mwvMsg_t() override;

    /// Radians, relative to what the reference letter names.
    bool decodeWindDirection(double& out) const;
    /// Reference letter, as sent.
    bool decodeReference(char& out) const;
    /// Metres per second, from the unit that the letter names: `M` (m/s), `N` (knots), `S` (statute
    /// miles per hour) or `K` (km/h).
    ///
    /// Caveat: unit letters are case-sensitive: `m`, `n`, `s` and `k` do not match.
    bool decodeWindSpeed(double& out) const;
    /// Status letter, as sent.
    bool decodeValidity(char& out) const;
};

} // namespace kalo
