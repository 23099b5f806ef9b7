#include "kalo/nmea/gstMsg.h"

#include "kalo/nmea/fieldAccess.h"

namespace kalo {

gstMsg_t::gstMsg_t(const nmeaFormat_t& format) : nmeaMsg_t(msgTypeGst, format) {}

gstMsg_t::~gstMsg_t() = default;

unsigned gstMsg_t::capabilities() const { return capabilityTimeOfDay; }

bool gstMsg_t::decodeTimeOfDay(timeOfDay_t& out) const { return decodeTime(*this, 1, out); }

bool gstMsg_t::decodeRangeRms(double& out) const { return decodeReal(*this, 2, out); }

bool gstMsg_t::decodeSemiMajor(double& out) const { return decodeReal(*this, 3, out); }

bool gstMsg_t::decodeSemiMinor(double& out) const { return decodeReal(*this, 4, out); }

bool gstMsg_t::decodeOrientation(double& out) const { return decodeRadians(*this, 5, out); }

bool gstMsg_t::decodeLatitudeError(double& out) const { return decodeReal(*this, 6, out); }

bool gstMsg_t::decodeLongitudeError(double& out) const { return decodeReal(*this, 7, out); }

bool gstMsg_t::decodeAltitudeError(double& out) const { return decodeReal(*this, 8, out); }

} // namespace kalo
