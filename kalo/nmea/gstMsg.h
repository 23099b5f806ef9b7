// GST, the error statistics of the pseudoranges.
#pragma once

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// The error ellipse of a position and its standard deviations, in metres.
///
///     0 address  1 time  2 range RMS  3 semi-major axis  4 semi-minor axis  5 orientation
///     6 latitude error  7 longitude error  8 altitude error
class KALO_EXPORT gstMsg_t : public nmeaMsg_t {
public:
    explicit gstMsg_t(const nmeaFormat_t& format);
    ~gstMsg_t() override;

    unsigned capabilities() const override;
    bool decodeTimeOfDay(timeOfDay_t& out) const override;
    /// RMS of the pseudorange residuals, as sent.
    bool decodeRangeRms(double& out) const;
    /// Standard deviation along the semi-major axis, as sent.
    bool decodeSemiMajor(double& out) const;
    /// Standard deviation along the semi-minor axis, as sent.
    bool decodeSemiMinor(double& out) const;
    /// Orientation of the semi-major axis, radians from true north.
    bool decodeOrientation(double& out) const;
    /// Standard deviation of the latitude, as sent.
    bool decodeLatitudeError(double& out) const;
    /// Standard deviation of the longitude, as sent.
    bool decodeLongitudeError(double& out) const;
    /// Standard deviation of the altitude, as sent.
    bool decodeAltitudeError(double& out) const;
};

} // namespace kalo
