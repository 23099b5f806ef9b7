#include "kalo/nmea/rotMsg.h"

#include "kalo/nmea/fieldAccess.h"
#include "kalo/util/units.h"

namespace kalo {

rotMsg_t::rotMsg_t(const nmeaFormat_t& format) : nmeaMsg_t(msgTypeRot, format) {}

rotMsg_t::~rotMsg_t() = default;

bool rotMsg_t::decodeRateOfTurn(double& out) const {
    double degreesPerMinute = 0;
    if (!decodeReal(*this, 1, degreesPerMinute)) {
        return false;
    }
    out = radiansFromDegrees(degreesPerMinute / 60);
    return true;
}

bool rotMsg_t::decodeValidity(char& out) const { return decodeLetter(*this, 2, out); }

} // namespace kalo
