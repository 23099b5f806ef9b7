#include "kalo/nmea/hdtMsg.h"

#include "kalo/nmea/fieldAccess.h"

namespace kalo {

hdtMsg_t::hdtMsg_t(const nmeaFormat_t& format) : nmeaMsg_t(msgTypeHdt, format) {}

hdtMsg_t::~hdtMsg_t() = default;

bool hdtMsg_t::decodeHeading(double& out) const { return decodeRadians(*this, 1, out); }

} // namespace kalo
