#include "kalo/nmea/dptMsg.h"

#include "kalo/nmea/fieldAccess.h"

namespace kalo {

dptMsg_t::dptMsg_t(const nmeaFormat_t& format) : nmeaMsg_t(msgTypeDpt, format) {}

dptMsg_t::~dptMsg_t() = default;

bool dptMsg_t::decodeDepth(double& out) const { return decodeReal(*this, 1, out); }

} // namespace kalo
