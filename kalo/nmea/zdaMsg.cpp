#include "kalo/nmea/zdaMsg.h"

#include <limits>

#include "kalo/nmea/fieldAccess.h"
#include "kalo/time/dateTime.h"

namespace kalo {

zdaMsg_t::zdaMsg_t(const nmeaFormat_t& format) : nmeaMsg_t(msgTypeZda, format) {}

zdaMsg_t::~zdaMsg_t() = default;

unsigned zdaMsg_t::capabilities() const { return capabilityDate | capabilityTimeOfDay; }

bool zdaMsg_t::decodeDate(date_t& out) const {
    if (field(4) == nullptr) {
        return false;
    }
    return decodeDecimal(*this, 2, out.day) && decodeDecimal(*this, 3, out.month) &&
           decodeDecimal(*this, 4, out.year);
}

bool zdaMsg_t::decodeTimeOfDay(timeOfDay_t& out) const { return decodeTime(*this, 1, out); }

bool zdaMsg_t::decodeLocalOffset(int& out) const {
    int hours = 0;
    int minutes = 0;
    if (!decodeField(*this, 5, decodeIntegerText, hours) ||
        !decodeField(*this, 6, decodeIntegerText, minutes) || minutes < 0 || minutes > 59) {
        return false;
    }
    const long long offset = 60LL * hours + (hours < 0 ? -minutes : minutes);
    if (offset < std::numeric_limits<int>::min() || offset > std::numeric_limits<int>::max()) {
        return false;
    }
    out = static_cast<int>(offset);
    return true;
}

} // namespace kalo
