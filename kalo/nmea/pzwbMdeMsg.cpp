#include "kalo/nmea/pzwbMdeMsg.h"

#include "kalo/nmea/fieldAccess.h"

namespace kalo {

pzwbMdeMsg_t::pzwbMdeMsg_t(const nmeaFormat_t& format) : nmeaMsg_t(msgTypePzwbMde, format) {}

pzwbMdeMsg_t::~pzwbMdeMsg_t() = default;

unsigned pzwbMdeMsg_t::capabilities() const { return capabilityTimeOfDay; }

bool pzwbMdeMsg_t::decodeTimeOfDay(timeOfDay_t& out) const { return decodeTime(*this, 1, out); }

bool pzwbMdeMsg_t::decodePrn(unsigned& out) const { return decodeDecimal(*this, 2, out); }

bool pzwbMdeMsg_t::decodeMeasType(unsigned& out) const { return decodeDecimal(*this, 3, out); }

bool pzwbMdeMsg_t::decodeNoncentrality(double& out) const { return decodeReal(*this, 4, out); }

bool pzwbMdeMsg_t::decodeMde(double& out) const { return decodeReal(*this, 5, out); }

bool pzwbMdeMsg_t::decodeLatitudeError(double& out) const { return decodeReal(*this, 6, out); }

bool pzwbMdeMsg_t::decodeLongitudeError(double& out) const { return decodeReal(*this, 7, out); }

bool pzwbMdeMsg_t::decodeAltitudeError(double& out) const { return decodeReal(*this, 8, out); }

} // namespace kalo
