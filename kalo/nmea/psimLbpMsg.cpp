#include "kalo/nmea/psimLbpMsg.h"

#include "kalo/nmea/fieldAccess.h"
#include "kalo/nmea/psimAxes.h"
#include "kalo/util/initialisedFirst.h"

namespace kalo {

const std::string psimLbpMsg_t::typeVessel KALO_INITIALISED_FIRST = "Ve";
const std::string psimLbpMsg_t::typeRov1 KALO_INITIALISED_FIRST = "R1";
const std::string psimLbpMsg_t::typeRov2 KALO_INITIALISED_FIRST = "R2";
const std::string psimLbpMsg_t::typeRov3 KALO_INITIALISED_FIRST = "R3";
const std::string psimLbpMsg_t::typeRov4 KALO_INITIALISED_FIRST = "R4";
const std::string psimLbpMsg_t::statusValid KALO_INITIALISED_FIRST = "A";
const std::string psimLbpMsg_t::statusUnknown KALO_INITIALISED_FIRST = "???";
const std::string psimLbpMsg_t::coordTypeCartesianNE KALO_INITIALISED_FIRST = "C";
const std::string psimLbpMsg_t::coordTypeCartesianEN KALO_INITIALISED_FIRST = "L";
const std::string psimLbpMsg_t::coordTypeUtmNE KALO_INITIALISED_FIRST = "U";
const std::string psimLbpMsg_t::coordTypeUtmEN KALO_INITIALISED_FIRST = "E";
const std::string psimLbpMsg_t::coordTypeRadians KALO_INITIALISED_FIRST = "R";

psimLbpMsg_t::psimLbpMsg_t(const nmeaFormat_t& format) : nmeaMsg_t(msgTypePsimLbp, format) {}

psimLbpMsg_t::~psimLbpMsg_t() = default;

unsigned psimLbpMsg_t::capabilities() const { return capabilityTimeOfDay; }

bool psimLbpMsg_t::decodeTimeOfDay(timeOfDay_t& out) const { return decodeTime(*this, 1, out); }

bool psimLbpMsg_t::decodeType(std::string& out) const { return decodeString(*this, 3, out); }

bool psimLbpMsg_t::decodeStatus(std::string& out) const { return decodeString(*this, 4, out); }

bool psimLbpMsg_t::decodeCoordType(std::string& out) const { return decodeString(*this, 5, out); }

bool psimLbpMsg_t::decodeRawX(double& out) const { return decodeReal(*this, 6, out); }

bool psimLbpMsg_t::decodeRawY(double& out) const { return decodeReal(*this, 7, out); }

bool psimLbpMsg_t::decodeDepth(double& out) const { return decodeReal(*this, 8, out); }

bool psimLbpMsg_t::decodeSemiMajor(double& out) const { return decodeReal(*this, 9, out); }

bool psimLbpMsg_t::decodeSemiMinor(double& out) const { return decodeReal(*this, 10, out); }

bool psimLbpMsg_t::decodeOrientation(double& out) const { return decodeRadians(*this, 11, out); }

bool psimLbpMsg_t::decodeRangeRms(double& out) const { return decodeReal(*this, 12, out); }

psimLbpMsg_t::coords_t::coords_t(const psimLbpMsg_t& msg) : m_msg(&msg), m_layout(layoutOf(msg)) {}

// The letters are literals, which every platform has before it initialises any static object.
psimLbpMsg_t::coords_t::layout_t psimLbpMsg_t::coords_t::layoutOf(const psimLbpMsg_t& msg) {
    const nmeaField_t* coordType = msg.field(5);
    if (coordType == nullptr || coordType->size() != 1) {
        return layoutUnknown;
    }
    switch (*coordType->data()) {
    case 'C': return layoutCartesianNE;
    case 'L': return layoutCartesianEN;
    case 'R': return layoutGeographic;
    case 'U': return layoutUtmNE;
    case 'E': return layoutUtmEN;
    default: return layoutUnknown;
    }
}

bool psimLbpMsg_t::coords_t::decodeNorthOffset(double& out) const {
    return decodeAxis(*m_msg, m_layout, layoutCartesianNE, layoutCartesianEN, out);
}

bool psimLbpMsg_t::coords_t::decodeEastOffset(double& out) const {
    return decodeAxis(*m_msg, m_layout, layoutCartesianEN, layoutCartesianNE, out);
}

bool psimLbpMsg_t::coords_t::decodeUtmNorthing(double& out) const {
    return decodeAxis(*m_msg, m_layout, layoutUtmNE, layoutUtmEN, out);
}

bool psimLbpMsg_t::coords_t::decodeUtmEasting(double& out) const {
    return decodeAxis(*m_msg, m_layout, layoutUtmEN, layoutUtmNE, out);
}

bool psimLbpMsg_t::coords_t::decodeLatitude(double& out) const {
    return m_layout == layoutGeographic && decodeRadians(*m_msg, 6, out);
}

bool psimLbpMsg_t::coords_t::decodeLongitude(double& out) const {
    return m_layout == layoutGeographic && decodeRadians(*m_msg, 7, out);
}

} // namespace kalo
