#include "kalo/nmea/rmcMsg.h"

#include "kalo/nmea/fieldAccess.h"
#include "kalo/time/timeUtil.h"
#include "kalo/util/units.h"

namespace kalo {

rmcMsg_t::rmcMsg_t(const nmeaFormat_t& format) : nmeaMsg_t(msgTypeRmc, format) {}

rmcMsg_t::~rmcMsg_t() = default;

unsigned rmcMsg_t::capabilities() const { return capabilityDate | capabilityTimeOfDay; }

bool rmcMsg_t::decodeDate(date_t& out) const {
    return decodeField(*this, 9, decodeDDMMYYText<defaultTwoDigitYearCutoff>, out);
}

bool rmcMsg_t::decodeTimeOfDay(timeOfDay_t& out) const { return decodeTime(*this, 1, out); }

bool rmcMsg_t::decodeValidity(char& out) const { return decodeLetter(*this, 2, out); }

bool rmcMsg_t::decodeLatitude(double& out) const { return kalo::decodeLatitude(*this, 3, out); }

bool rmcMsg_t::decodeLongitude(double& out) const { return kalo::decodeLongitude(*this, 5, out); }

bool rmcMsg_t::decodeSpeedOverGround(double& out) const {
    double knots = 0;
    if (!decodeReal(*this, 7, knots)) {
        return false;
    }
    out = knots * knot;
    return true;
}

bool rmcMsg_t::decodeCourseOverGround(double& out) const { return decodeRadians(*this, 8, out); }

bool rmcMsg_t::decodeMagneticVariation(double& out) const {
    return decodeSigned(*this, 10, decodeRadiansText, decodeEWText, out);
}

bool rmcMsg_t::decodeFixMode(char& out) const { return decodeLetter(*this, 12, out); }

} // namespace kalo
