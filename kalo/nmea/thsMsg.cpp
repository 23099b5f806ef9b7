#include "kalo/nmea/thsMsg.h"

#include "kalo/nmea/fieldAccess.h"

namespace kalo {

thsMsg_t::thsMsg_t(const nmeaFormat_t& format) : nmeaMsg_t(msgTypeThs, format) {}

thsMsg_t::~thsMsg_t() = default;

bool thsMsg_t::decodeHeading(double& out) const { return decodeRadians(*this, 1, out); }

bool thsMsg_t::decodeValidity(char& out) const { return decodeLetter(*this, 2, out); }

} // namespace kalo
