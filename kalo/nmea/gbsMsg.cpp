#include "kalo/nmea/gbsMsg.h"

#include "kalo/nmea/fieldAccess.h"

namespace kalo {

gbsMsg_t::gbsMsg_t(const nmeaFormat_t& format) : nmeaMsg_t(msgTypeGbs, format) {}

gbsMsg_t::~gbsMsg_t() = default;

unsigned gbsMsg_t::capabilities() const { return capabilityTimeOfDay; }

bool gbsMsg_t::decodeTimeOfDay(timeOfDay_t& out) const { return decodeTime(*this, 1, out); }

bool gbsMsg_t::decodeLatitudeError(double& out) const { return decodeReal(*this, 2, out); }

bool gbsMsg_t::decodeLongitudeError(double& out) const { return decodeReal(*this, 3, out); }

bool gbsMsg_t::decodeAltitudeError(double& out) const { return decodeReal(*this, 4, out); }

bool gbsMsg_t::decodeFailedSatId(unsigned& out) const { return decodeDecimal(*this, 5, out); }

bool gbsMsg_t::decodeFailedSatProbability(double& out) const { return decodeReal(*this, 6, out); }

bool gbsMsg_t::decodeFailedSatBias(double& out) const { return decodeReal(*this, 7, out); }

bool gbsMsg_t::decodeBiasStdDev(double& out) const { return decodeReal(*this, 8, out); }

} // namespace kalo
