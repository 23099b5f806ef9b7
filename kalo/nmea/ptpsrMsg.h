// "$PTPSR", heading and attitude from two antennas.
#pragma once

#include <string>

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// What a satellite receiver with two antennas measures between them.
///
///     0 address  1 sentence formatter  2 time  3 attitude availability  4 antenna position type
///     5 heading  6 inclination  7 slope distance  8 heading RMS  9 inclination RMS
///     10 azimuth offset  11-15 satellites used: GPS, GLONASS, BeiDou, Galileo, others
///
/// Caveat: `capabilities()` is 0 although the view has a time of day.
///
/// Caveat: heading, inclination and heading RMS are given as sent. They are the only angles of the
/// library that are not converted.
class KALO_EXPORT ptpsrMsg_t : public nmeaMsg_t {
public:
    explicit ptpsrMsg_t(const nmeaFormat_t& format);
    ~ptpsrMsg_t() override;

    bool decodeTimeOfDay(timeOfDay_t& out) const override;
    /// The name in field 1. True whenever the field exists, even if it is empty.
    bool decodeSentenceFormatter(std::string& out) const;
    /// Letter in field 3, as sent.
    bool decodeAttitudeAvailability(char& out) const;
    /// Letter in field 4, as sent.
    bool decodePOSAntennaPositionType(char& out) const;
    /// As sent, not in radians.
    bool decodeHeading(double& out) const;
    /// As sent, not in radians.
    bool decodeInclination(double& out) const;
    /// Distance between the antennas, as sent.
    bool decodeSlopeDistance(double& out) const;
    /// As sent, not in radians.
    bool decodeHeadingRMS(double& out) const;
    /// Radians.
    bool decodeInclinationRMS(double& out) const;
    /// Radians.
    bool decodeAzimuthOffset(double& out) const;
    /// @name Numbers of satellites used
    /// @{
    bool decodeNumGPSSatellites(unsigned short& out) const;
    bool decodeNumGLONASSSatellites(unsigned short& out) const;
    bool decodeNumBeiDouSatellites(unsigned short& out) const;
    bool decodeNumGalileoSatellites(unsigned short& out) const;
    bool decodeNumOtherSatellites(unsigned short& out) const;
    /// @}
};

} // namespace kalo
