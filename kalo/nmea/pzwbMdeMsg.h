// "$PZWBMDE", a receiver's proprietary report on one satellite.
#pragma once

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// The marginally detectable error (MDE) of one measurement, and its effect on the position.
///
///     0 address  1 time  2 satellite  3 measurement type  4 non-centrality  5 MDE
///     6 latitude error  7 longitude error  8 altitude error
class KALO_EXPORT pzwbMdeMsg_t : public nmeaMsg_t {
public:
    explicit pzwbMdeMsg_t(const nmeaFormat_t& format);
    ~pzwbMdeMsg_t() override;

    unsigned capabilities() const override;
    bool decodeTimeOfDay(timeOfDay_t& out) const override;
    /// Satellite identifier.
    bool decodePrn(unsigned& out) const;
    /// Code of the measurement type, as sent.
    bool decodeMeasType(unsigned& out) const;
    /// Non-centrality parameter, as sent.
    bool decodeNoncentrality(double& out) const;
    /// Marginally detectable error, as sent.
    bool decodeMde(double& out) const;
    /// Effect on the latitude, as sent.
    bool decodeLatitudeError(double& out) const;
    /// Effect on the longitude, as sent.
    bool decodeLongitudeError(double& out) const;
    /// Effect on the altitude, as sent.
    bool decodeAltitudeError(double& out) const;
};

} // namespace kalo
