#include "kalo/nmea/ggaMsgBase.h"

#include "kalo/nmea/fieldAccess.h"

namespace kalo {

ggaMsgBase_t::ggaMsgBase_t(nmeaMsgType_t type, const nmeaFormat_t& format)
    : nmeaMsg_t(type, format) {}

ggaMsgBase_t::~ggaMsgBase_t() = default;

bool ggaMsgBase_t::decodeTimeOfDay(timeOfDay_t& out) const { return decodeTime(*this, 1, out); }

bool ggaMsgBase_t::decodeLatitude(double& out) const { return kalo::decodeLatitude(*this, 2, out); }

bool ggaMsgBase_t::decodeLongitude(double& out) const {
    return kalo::decodeLongitude(*this, 4, out);
}

bool ggaMsgBase_t::decodeQuality(unsigned& out) const { return decodeDecimal(*this, 6, out); }

bool ggaMsgBase_t::decodeSatCount(unsigned& out) const { return decodeDecimal(*this, 7, out); }

bool ggaMsgBase_t::decodeHdop(double& out) const { return decodeReal(*this, 8, out); }

bool ggaMsgBase_t::decodeGeoidalHeight(double& out) const { return decodeReal(*this, 9, out); }

bool ggaMsgBase_t::decodeGeoidalSeparation(double& out) const { return decodeReal(*this, 11, out); }

bool ggaMsgBase_t::decodeDiffAge(double& out) const { return decodeReal(*this, 13, out); }

bool ggaMsgBase_t::decodeRefStationId(unsigned& out) const { return decodeDecimal(*this, 14, out); }

} // namespace kalo
