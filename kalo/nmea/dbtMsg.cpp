#include "kalo/nmea/dbtMsg.h"

#include "kalo/nmea/fieldAccess.h"
#include "kalo/util/units.h"

namespace kalo {

dbtMsg_t::dbtMsg_t(const nmeaFormat_t& format) : nmeaMsg_t(msgTypeDbt, format) {}

dbtMsg_t::~dbtMsg_t() = default;

bool dbtMsg_t::decodeDepth(double& out) const {
    if (decodeWithUnit(*this, 1, 'f', out)) {
        out = metresFromFeet(out);
        return true;
    }
    if (decodeWithUnit(*this, 3, 'M', out)) {
        return true;
    }
    if (decodeWithUnit(*this, 5, 'F', out)) {
        out = metresFromFathoms(out);
        return true;
    }
    return false;
}

} // namespace kalo
