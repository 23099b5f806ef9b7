// DTM, the datum of the positions.
#pragma once

#include <string>

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// The local datum of the positions and its offsets from the reference datum. The codes of the
/// datums are not interpreted.
///
///     0 address  1 local datum  2 subdivision  3,4 latitude offset (minutes)
///     5,6 longitude offset (minutes)  7 altitude offset  8 reference datum
///
/// A text decodes whenever its field exists, even if it is empty.
class KALO_EXPORT dtmMsg_t : public nmeaMsg_t {
public:
    explicit dtmMsg_t(const nmeaFormat_t& format);
    ~dtmMsg_t() override;

    bool decodeLocalDatum(std::string& out) const;
    bool decodeLocalDatumSubdivision(std::string& out) const;
    /// Radians, north positive. False leaves `out` untouched.
    bool decodeLatitudeOffset(double& out) const;
    /// Radians, east positive. False leaves `out` untouched.
    bool decodeLongitudeOffset(double& out) const;
    /// Metres.
    bool decodeAltitudeOffset(double& out) const;
    bool decodeReferenceDatum(std::string& out) const;
};

} // namespace kalo
