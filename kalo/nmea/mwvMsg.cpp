#include "kalo/nmea/mwvMsg.h"

#include "kalo/nmea/fieldAccess.h"
#include "kalo/util/units.h"

namespace kalo {

mwvMsg_t::mwvMsg_t(const nmeaFormat_t& format) : nmeaMsg_t(msgTypeMwv, format) {}

mwvMsg_t::~mwvMsg_t() = default;

bool mwvMsg_t::decodeWindDirection(double& out) const { return decodeRadians(*this, 1, out); }

bool mwvMsg_t::decodeReference(char& out) const { return decodeLetter(*this, 2, out); }

bool mwvMsg_t::decodeWindSpeed(double& out) const {
    char unit = 0;
    if (field(4) == nullptr || !decodeReal(*this, 3, out) || !decodeLetter(*this, 4, unit)) {
        return false;
    }
    switch (unit) {
    case 'M': return true;
    case 'N': out *= knot; return true;
    case 'S': out *= statuteMilePerHour; return true;
    case 'K': out /= kilometresPerHour; return true;
    default: return false;
    }
}

bool mwvMsg_t::decodeValidity(char& out) const { return decodeLetter(*this, 5, out); }

} // namespace kalo
