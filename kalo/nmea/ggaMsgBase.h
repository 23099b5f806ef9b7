// The accessors that kalo/nmea/ggaMsg.h and kalo/nmea/pzwbGgaMsg.h have in common. The layout of
// the sentence is described in kalo/nmea/ggaMsg.h.
#pragma once

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// The accessors of the fix data of a satellite receiver; `ggaMsg_t` lists the fields. Make a
/// `ggaMsg_t` or a `pzwbGgaMsg_t`.
class KALO_EXPORT ggaMsgBase_t : public nmeaMsg_t {
public:
    ~ggaMsgBase_t() override;

    bool decodeTimeOfDay(timeOfDay_t& out) const override;
    /// Radians, north positive. False leaves `out` untouched.
    bool decodeLatitude(double& out) const;
    /// Radians, east positive. False leaves `out` untouched.
    bool decodeLongitude(double& out) const;
    /// Fix quality indicator, as sent.
    bool decodeQuality(unsigned& out) const;
    /// Number of satellites in use.
    bool decodeSatCount(unsigned& out) const;
    /// Horizontal dilution of precision.
    bool decodeHdop(double& out) const;
    /// Antenna height above the geoid (mean sea level), metres.
    bool decodeGeoidalHeight(double& out) const;
    /// Geoidal separation: height of the geoid above the ellipsoid, metres.
    bool decodeGeoidalSeparation(double& out) const;
    /// Age of the differential corrections, seconds.
    bool decodeDiffAge(double& out) const;
    /// Identifier of the differential reference station.
    bool decodeRefStationId(unsigned& out) const;

protected:
    ggaMsgBase_t(nmeaMsgType_t type, const nmeaFormat_t& format);
};

} // namespace kalo
