#include "kalo/nmea/gllMsg.h"

#include "kalo/nmea/fieldAccess.h"

namespace kalo {

gllMsg_t::gllMsg_t(const nmeaFormat_t& format) : nmeaMsg_t(msgTypeGll, format) {}

gllMsg_t::~gllMsg_t() = default;

unsigned gllMsg_t::capabilities() const { return capabilityTimeOfDay; }

bool gllMsg_t::decodeTimeOfDay(timeOfDay_t& out) const {
    return decodeField(*this, 5, &nmeaField_t::decodeHHMMSS, out);
}

bool gllMsg_t::decodeLatitude(double& out) const {
    return decodeSigned(*this, 1, &nmeaField_t::decodeLatitude, &nmeaField_t::decodeNS, out);
}

bool gllMsg_t::decodeLongitude(double& out) const {
    return decodeSigned(*this, 3, &nmeaField_t::decodeLongitude, &nmeaField_t::decodeEW, out);
}

bool gllMsg_t::decodeValidity(char& out) const { return decodeLetter(*this, 6, out); }

bool gllMsg_t::decodeFixMode(char& out) const { return decodeLetter(*this, 7, out); }

} // namespace kalo
