#include "kalo/nmea/mwdMsg.h"

#include "kalo/nmea/fieldAccess.h"
#include "kalo/util/units.h"

namespace kalo {

mwdMsg_t::mwdMsg_t(const nmeaFormat_t& format) : nmeaMsg_t(msgTypeMwd, format) {}

mwdMsg_t::~mwdMsg_t() = default;

bool mwdMsg_t::decodeTrueWindDirection(double& out) const { return decodeRadians(*this, 1, out); }

bool mwdMsg_t::decodeMagneticWindDirection(double& out) const {
    return decodeRadians(*this, 3, out);
}

bool mwdMsg_t::decodeWindSpeed(double& out) const {
    if (decodeWithUnit(*this, 5, 'N', out)) {
        out *= knot;
        return true;
    }
    return decodeWithUnit(*this, 7, 'M', out);
}

} // namespace kalo
