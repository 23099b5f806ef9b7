#include "kalo/nmea/pzwbGstMsg.h"

#include "kalo/nmea/fieldAccess.h"

namespace kalo {

pzwbGstMsg_t::pzwbGstMsg_t(const nmeaFormat_t& format) : nmeaMsg_t(msgTypePzwbGst, format) {}

pzwbGstMsg_t::~pzwbGstMsg_t() = default;

unsigned pzwbGstMsg_t::capabilities() const { return capabilityTimeOfDay; }

bool pzwbGstMsg_t::decodeTimeOfDay(timeOfDay_t& out) const { return decodeTime(*this, 1, out); }

bool pzwbGstMsg_t::decodeRangeRms(double& out) const { return decodeReal(*this, 2, out); }

bool pzwbGstMsg_t::decodeSemiMajor(double& out) const { return decodeReal(*this, 3, out); }

bool pzwbGstMsg_t::decodeSemiMinor(double& out) const { return decodeReal(*this, 4, out); }

bool pzwbGstMsg_t::decodeOrientation(double& out) const { return decodeRadians(*this, 5, out); }

bool pzwbGstMsg_t::decodeLatitudeError(double& out) const { return decodeReal(*this, 6, out); }

bool pzwbGstMsg_t::decodeLongitudeError(double& out) const { return decodeReal(*this, 7, out); }

bool pzwbGstMsg_t::decodeAltitudeError(double& out) const { return decodeReal(*this, 8, out); }

bool pzwbGstMsg_t::decodeFtest(unsigned& out) const { return decodeDecimal(*this, 9, out); }

} // namespace kalo
