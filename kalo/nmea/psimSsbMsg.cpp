#include "kalo/nmea/psimSsbMsg.h"

#include "kalo/nmea/fieldAccess.h"
#include "kalo/nmea/psimAxes.h"
#include "kalo/util/initialisedFirst.h"
#include "kalo/util/stringUtil.h"

namespace kalo {

const std::string psimSsbMsg_t::statusValid KALO_INITIALISED_FIRST = "A";
const std::string psimSsbMsg_t::statusInvalid KALO_INITIALISED_FIRST = "V";
const std::string psimSsbMsg_t::coordTypeCartesian KALO_INITIALISED_FIRST = "C";
const std::string psimSsbMsg_t::coordTypePolar KALO_INITIALISED_FIRST = "P";
const std::string psimSsbMsg_t::coordTypeUtm KALO_INITIALISED_FIRST = "U";
const std::string psimSsbMsg_t::coordTypeRadians KALO_INITIALISED_FIRST = "R";
const std::string psimSsbMsg_t::orientationNorth KALO_INITIALISED_FIRST = "N";
const std::string psimSsbMsg_t::orientationEast KALO_INITIALISED_FIRST = "E";
const std::string psimSsbMsg_t::orientationHead KALO_INITIALISED_FIRST = "H";
const std::string psimSsbMsg_t::filterCodeMeasured KALO_INITIALISED_FIRST = "M";
const std::string psimSsbMsg_t::filterCodeFiltered KALO_INITIALISED_FIRST = "F";
const std::string psimSsbMsg_t::filterCodePredicted KALO_INITIALISED_FIRST = "P";
const std::string psimSsbMsg_t::addInfoNone KALO_INITIALISED_FIRST = "N";
const std::string psimSsbMsg_t::addInfoTime KALO_INITIALISED_FIRST = "T";
const std::string psimSsbMsg_t::addInfoDepth KALO_INITIALISED_FIRST = "D";
const std::string psimSsbMsg_t::addInfoCompass KALO_INITIALISED_FIRST = "C";
const std::string psimSsbMsg_t::addInfoInclinometer KALO_INITIALISED_FIRST = "I";

psimSsbMsg_t::psimSsbMsg_t(const nmeaFormat_t& format) : nmeaMsg_t(msgTypePsimSsb, format) {}

psimSsbMsg_t::~psimSsbMsg_t() = default;

unsigned psimSsbMsg_t::capabilities() const { return capabilityTimeOfDay; }

bool psimSsbMsg_t::decodeTimeOfDay(timeOfDay_t& out) const { return decodeTime(*this, 1, out); }

bool psimSsbMsg_t::decodeBeaconId(std::string& out) const { return decodeString(*this, 2, out); }

bool psimSsbMsg_t::decodeBeaconNumber(unsigned& out) const {
    std::string id;
    if (!decodeBeaconId(id)) {
        return false;
    }
    id.erase(0, id.find_first_of("0123456789"));
    return kalo::decode(id, out, 10);
}

bool psimSsbMsg_t::decodeStatus(std::string& out) const { return decodeString(*this, 3, out); }

bool psimSsbMsg_t::decodeErrorCode(std::string& out) const { return decodeString(*this, 4, out); }

bool psimSsbMsg_t::decodeCoordType(std::string& out) const { return decodeString(*this, 5, out); }

bool psimSsbMsg_t::decodeOrientation(std::string& out) const { return decodeString(*this, 6, out); }

bool psimSsbMsg_t::decodeFilterCode(std::string& out) const { return decodeString(*this, 7, out); }

bool psimSsbMsg_t::decodeRawX(double& out) const { return decodeReal(*this, 8, out); }

bool psimSsbMsg_t::decodeRawY(double& out) const { return decodeReal(*this, 9, out); }

bool psimSsbMsg_t::decodeDepth(double& out) const { return decodeReal(*this, 10, out); }

bool psimSsbMsg_t::decodeExpectedAccuracy(double& out) const { return decodeReal(*this, 11, out); }

bool psimSsbMsg_t::decodeAddInfoType(std::string& out) const {
    return decodeString(*this, 12, out);
}

bool psimSsbMsg_t::decodeRawAddInfo1(double& out) const { return decodeReal(*this, 13, out); }

bool psimSsbMsg_t::decodeRawAddInfo2(double& out) const { return decodeReal(*this, 14, out); }

psimSsbMsg_t::coords_t::coords_t(const psimSsbMsg_t& msg) : m_msg(&msg), m_layout(layoutOf(msg)) {}

psimSsbMsg_t::coords_t::layout_t psimSsbMsg_t::coords_t::layoutOf(const psimSsbMsg_t& msg) {
    static constexpr struct {
        char coordType;
        char orientation;
        layout_t layout;
    } layouts[] = {
        {'C', 'H', layoutShipRelative}, {'C', 'N', layoutNorthEast},
        {'C', 'E', layoutEastNorth},    {'P', 'H', layoutPolar},
        {'R', 'N', layoutGeographic},   {'U', 'N', layoutUtmNorthEast},
        {'U', 'E', layoutUtmEastNorth},
    };
    char coordType = 0;
    char orientation = 0;
    if (!decodeLetter(msg, 5, coordType) || !decodeLetter(msg, 6, orientation)) {
        return layoutUnknown;
    }
    for (const auto& row : layouts) {
        if (coordType == row.coordType && orientation == row.orientation) {
            return row.layout;
        }
    }
    return layoutUnknown;
}

bool psimSsbMsg_t::coords_t::decodeRange(double& out) const {
    return m_layout == layoutPolar && m_msg->decodeRawX(out);
}

bool psimSsbMsg_t::coords_t::decodeBearing(double& out) const {
    return m_layout == layoutPolar && decodeRadians(*m_msg, 9, out);
}

bool psimSsbMsg_t::coords_t::decodeStarboardOffset(double& out) const {
    return m_layout == layoutShipRelative && m_msg->decodeRawX(out);
}

bool psimSsbMsg_t::coords_t::decodeForwardOffset(double& out) const {
    return m_layout == layoutShipRelative && m_msg->decodeRawY(out);
}

bool psimSsbMsg_t::coords_t::decodeNorthOffset(double& out) const {
    return decodeAxis(*m_msg, m_layout, layoutNorthEast, layoutEastNorth, out);
}

bool psimSsbMsg_t::coords_t::decodeEastOffset(double& out) const {
    return decodeAxis(*m_msg, m_layout, layoutEastNorth, layoutNorthEast, out);
}

bool psimSsbMsg_t::coords_t::decodeUtmNorthing(double& out) const {
    return decodeAxis(*m_msg, m_layout, layoutUtmNorthEast, layoutUtmEastNorth, out);
}

bool psimSsbMsg_t::coords_t::decodeUtmEasting(double& out) const {
    return decodeAxis(*m_msg, m_layout, layoutUtmEastNorth, layoutUtmNorthEast, out);
}

bool psimSsbMsg_t::coords_t::decodeLatitude(double& out) const {
    return m_layout == layoutGeographic && decodeRadians(*m_msg, 8, out);
}

bool psimSsbMsg_t::coords_t::decodeLongitude(double& out) const {
    return m_layout == layoutGeographic && decodeRadians(*m_msg, 9, out);
}

psimSsbMsg_t::addInfo_t::addInfo_t(const psimSsbMsg_t& msg) : m_msg(&msg), m_kind(kindOf(msg)) {}

psimSsbMsg_t::addInfo_t::kind_t psimSsbMsg_t::addInfo_t::kindOf(const psimSsbMsg_t& msg) {
    char type = 0;
    if (!decodeLetter(msg, 12, type)) {
        return kindNone;
    }
    return type == 'D'   ? kindDepth
           : type == 'I' ? kindInclinometer
           : type == 'T' ? kindTime
                         : kindNone;
}

bool psimSsbMsg_t::addInfo_t::decodeRoll(double& out) const {
    return m_kind == kindInclinometer && decodeRadians(*m_msg, 13, out);
}

bool psimSsbMsg_t::addInfo_t::decodePitch(double& out) const {
    return m_kind == kindInclinometer && decodeRadians(*m_msg, 14, out);
}

bool psimSsbMsg_t::addInfo_t::decodeRangeTime(double& out) const {
    return m_kind == kindTime && m_msg->decodeRawAddInfo1(out);
}

bool psimSsbMsg_t::addInfo_t::decodeDepth(double& out) const {
    return m_kind == kindDepth && m_msg->decodeRawAddInfo1(out);
}

} // namespace kalo
