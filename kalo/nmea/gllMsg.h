// GLL, a geographic position.
#pragma once

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// A position with its time.
///
///     0 address  1,2 latitude  3,4 longitude  5 time  6 status  7 mode (version 2.3 on)
///
/// The oldest form of the sentence ends after the longitude. The status and mode letters are not
/// interpreted.
class KALO_EXPORT gllMsg_t : public nmeaMsg_t {
public:
    explicit gllMsg_t(const nmeaFormat_t& format);
    ~gllMsg_t() override;

    unsigned capabilities() const override;
    bool decodeTimeOfDay(timeOfDay_t& out) const override;
    /// Radians, north positive. False leaves `out` untouched.
    bool decodeLatitude(double& out) const;
    /// Radians, east positive. False leaves `out` untouched.
    bool decodeLongitude(double& out) const;
    /// Status letter, as sent.
    bool decodeValidity(char& out) const;
    /// Mode letter, as sent.
    bool decodeFixMode(char& out) const;
};

} // namespace kalo
