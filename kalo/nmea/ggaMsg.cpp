#include "kalo/nmea/ggaMsg.h"

namespace kalo {

ggaMsg_t::ggaMsg_t(const nmeaFormat_t& format) : ggaMsgBase_t(msgTypeGga, format) {}

ggaMsg_t::~ggaMsg_t() = default;

unsigned ggaMsg_t::capabilities() const { return capabilityTimeOfDay; }

} // namespace kalo
