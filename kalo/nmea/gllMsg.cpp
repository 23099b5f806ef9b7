#include "kalo/nmea/gllMsg.h"

#include "kalo/nmea/fieldAccess.h"

namespace kalo {

gllMsg_t::gllMsg_t(const nmeaFormat_t& format) : nmeaMsg_t(msgTypeGll, format) {}

gllMsg_t::~gllMsg_t() = default;

unsigned gllMsg_t::capabilities() const { return capabilityTimeOfDay; }

bool gllMsg_t::decodeTimeOfDay(timeOfDay_t& out) const { return decodeTime(*this, 5, out); }

bool gllMsg_t::decodeLatitude(double& out) const { return kalo::decodeLatitude(*this, 1, out); }

bool gllMsg_t::decodeLongitude(double& out) const { return kalo::decodeLongitude(*this, 3, out); }

bool gllMsg_t::decodeValidity(char& out) const { return decodeLetter(*this, 6, out); }

bool gllMsg_t::decodeFixMode(char& out) const { return decodeLetter(*this, 7, out); }

} // namespace kalo
