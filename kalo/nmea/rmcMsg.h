// RMC, the recommended minimum of navigation data.
#pragma once

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// Time and date, position, course and speed. Of the other sentences only ZDA has a date.
///
///     0 address  1 time  2 status  3,4 latitude  5,6 longitude  7 speed (knots)
///     8 course over ground  9 date (ddmmyy)  10,11 magnetic variation  12 mode (version 2.3 on)
///
/// The status and mode letters are not interpreted: a void sentence (status V) decodes like any
/// other.
///
/// Caveat: the century of the date depends on the system clock, see kalo/time/timeUtil.h.
class KALO_EXPORT rmcMsg_t : public nmeaMsg_t {
public:
    explicit rmcMsg_t(const nmeaFormat_t& format);
    ~rmcMsg_t() override;

    unsigned capabilities() const override;
    bool decodeDate(date_t& out) const override;
    bool decodeTimeOfDay(timeOfDay_t& out) const override;
    /// Status letter, as sent.
    bool decodeValidity(char& out) const;
    /// Radians, north positive. False leaves `out` untouched.
    bool decodeLatitude(double& out) const;
    /// Radians, east positive. False leaves `out` untouched.
    bool decodeLongitude(double& out) const;
    /// Metres per second. False leaves `out` untouched.
    bool decodeSpeedOverGround(double& out) const;
    /// Radians from true north.
    bool decodeCourseOverGround(double& out) const;
    /// Radians, east positive. False leaves `out` untouched.
    bool decodeMagneticVariation(double& out) const;
    /// Mode letter, as sent.
    bool decodeFixMode(char& out) const;
};

} // namespace kalo
