#include "kalo/nmea/dtmMsg.h"

#include "kalo/nmea/fieldAccess.h"
#include "kalo/util/units.h"

namespace kalo {

namespace {

bool decodeOffset(const nmeaMsg_t& msg, unsigned index,
                  bool (*signDecoder)(const std::string&, double&), double& out) {
    double minutes = 0;
    if (!decodeSigned(msg, index, decodeRealText, signDecoder, minutes)) {
        return false;
    }
    out = radiansFromDegrees(minutes / 60);
    return true;
}

} // namespace

dtmMsg_t::dtmMsg_t(const nmeaFormat_t& format) : nmeaMsg_t(msgTypeDtm, format) {}

dtmMsg_t::~dtmMsg_t() = default;

bool dtmMsg_t::decodeLocalDatum(std::string& out) const { return decodeString(*this, 1, out); }

bool dtmMsg_t::decodeLocalDatumSubdivision(std::string& out) const {
    return decodeString(*this, 2, out);
}

bool dtmMsg_t::decodeLatitudeOffset(double& out) const {
    return decodeOffset(*this, 3, decodeNSText, out);
}

bool dtmMsg_t::decodeLongitudeOffset(double& out) const {
    return decodeOffset(*this, 5, decodeEWText, out);
}

bool dtmMsg_t::decodeAltitudeOffset(double& out) const { return decodeReal(*this, 7, out); }

bool dtmMsg_t::decodeReferenceDatum(std::string& out) const { return decodeString(*this, 8, out); }

} // namespace kalo
