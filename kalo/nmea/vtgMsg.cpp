#include "kalo/nmea/vtgMsg.h"

#include "kalo/nmea/fieldAccess.h"
#include "kalo/util/units.h"

namespace kalo {

vtgMsg_t::vtgMsg_t(const nmeaFormat_t& format) : nmeaMsg_t(msgTypeVtg, format) {}

vtgMsg_t::~vtgMsg_t() = default;

bool vtgMsg_t::decodeTrueCourseOverGround(double& out) const {
    return decodeRadians(*this, 1, out);
}

bool vtgMsg_t::decodeMagneticCourseOverGround(double& out) const {
    return decodeRadians(*this, 3, out);
}

bool vtgMsg_t::decodeSpeedOverGround(double& out) const {
    if (decodeWithUnit(*this, 5, 'N', out)) {
        out *= knot;
        return true;
    }
    if (decodeWithUnit(*this, 7, 'K', out)) {
        out /= kilometresPerHour;
        return true;
    }
    return false;
}

bool vtgMsg_t::decodeFixMode(char& out) const { return decodeLetter(*this, 9, out); }

bool vtgMsg_t::hasFixMode() const { return fieldCount() > 9; }

} // namespace kalo
