// GBS, the detection of satellite faults.
#pragma once

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// The errors to expect in a position, and the satellite that has most likely failed.
///
///     0 address  1 time  2 latitude error  3 longitude error  4 altitude error
///     5 failed satellite  6 probability of missed detection  7 bias
///     8 standard deviation of the bias
class KALO_EXPORT gbsMsg_t : public nmeaMsg_t {
public:
    explicit gbsMsg_t(const nmeaFormat_t& format);
    ~gbsMsg_t() override;

    unsigned capabilities() const override;
    bool decodeTimeOfDay(timeOfDay_t& out) const override;
    /// Expected error in latitude, as sent.
    bool decodeLatitudeError(double& out) const;
    /// Expected error in longitude, as sent.
    bool decodeLongitudeError(double& out) const;
    /// Expected error in altitude, as sent.
    bool decodeAltitudeError(double& out) const;
    /// Identifier of the satellite that has most likely failed.
    bool decodeFailedSatId(unsigned& out) const;
    /// Probability of missed detection, as sent.
    bool decodeFailedSatProbability(double& out) const;
    /// Estimated bias of that satellite, as sent.
    bool decodeFailedSatBias(double& out) const;
    /// Standard deviation of the bias, as sent.
    bool decodeBiasStdDev(double& out) const;
};

} // namespace kalo
