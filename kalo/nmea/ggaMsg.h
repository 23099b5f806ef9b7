// GGA, the fix data of a satellite receiver. Its accessors are declared in kalo/nmea/ggaMsgBase.h.
#pragma once

#include "kalo/export.h"
#include "kalo/nmea/ggaMsgBase.h"

namespace kalo {

/// The position of a satellite receiver, with its time and its quality. Each field of GGA has an
/// accessor, which this class inherits from `ggaMsgBase_t`:
///
///     0     address
///     1     time                decodeTimeOfDay            UTC
///     2,3   latitude            decodeLatitude             radians, north positive
///     4,5   longitude           decodeLongitude            radians, east positive
///     6     quality             decodeQuality              as sent
///     7     satellites in use   decodeSatCount
///     8     HDOP                decodeHdop
///     9,10  altitude            decodeGeoidalHeight        metres above mean sea level
///     11,12 geoidal separation  decodeGeoidalSeparation    metres
///     13    age of corrections  decodeDiffAge              seconds
///     14    reference station   decodeRefStationId
///
/// The unit letters in fields 10 and 12 are not read.
class KALO_EXPORT ggaMsg_t : public ggaMsgBase_t {
public:
    explicit ggaMsg_t(const nmeaFormat_t& format);
    ~ggaMsg_t() override;

    unsigned capabilities() const override;
};

} // namespace kalo
