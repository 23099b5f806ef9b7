#include "kalo/nmea/pzwbGgaMsg.h"

namespace kalo {

pzwbGgaMsg_t::pzwbGgaMsg_t(const nmeaFormat_t& format) : ggaMsgBase_t(msgTypePzwbGga, format) {}

pzwbGgaMsg_t::~pzwbGgaMsg_t() = default;

unsigned pzwbGgaMsg_t::capabilities() const { return capabilityTimeOfDay; }

} // namespace kalo
