// MWD, the direction and speed of the wind.
#pragma once

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

///   0 address  1 true direction  2 T  3 magnetic direction  4 M  5 speed (knots)  6 N
///   7 speed (m/s)  8 M
///
/// The letters behind the directions are not read.
class KALO_EXPORT mwdMsg_t : public nmeaMsg_t {
public:
    explicit mwdMsg_t(const nmeaFormat_t& format);
    ~mwdMsg_t() override;

    /// Radians from true north.
    bool decodeTrueWindDirection(double& out) const;
    /// Radians from magnetic north.
    bool decodeMagneticWindDirection(double& out) const;
    /// Metres per second, from the knots where they and their letter N are well formed, else from
    /// the m/s and M.
    bool decodeWindSpeed(double& out) const;
};

} // namespace kalo
