#include "kalo/nmea/gsvSet.h"

#include "kalo/nmea/gsvMsg.h"
#include "kalo/util/units.h"

namespace kalo {

namespace {

constexpr double mostElevation = pi / 2;
constexpr double mostAzimuth = 2 * pi;

bool decodeSat(const gsvMsg_t& msg, unsigned block, unsigned& prn, gsvSet_t::sat_t& sat) {
    if (!msg.decodeSatPrn(block, prn) || !msg.decodeSatElevation(block, sat.elevation) ||
        !msg.decodeSatAzimuth(block, sat.azimuth)) {
        return false;
    }
    sat.hasSnr = msg.decodeSatSnr(block, sat.snr);
    return sat.elevation >= 0 && sat.elevation <= mostElevation && sat.azimuth >= 0 &&
           sat.azimuth <= mostAzimuth;
}

} // namespace

struct gsvSet_t::state_t {
    unsigned messageCount = 0;
    unsigned lastMessageNumber = 0;
    unsigned totalSatCount = 0;
    std::map<unsigned, sat_t> satMap;
};

gsvSet_t::gsvSet_t() : m_state(new state_t) {}

gsvSet_t::~gsvSet_t() { delete m_state; }

bool gsvSet_t::decode(const gsvMsg_t& msg) {
    unsigned count = 0;
    unsigned number = 0;
    unsigned total = 0;
    unsigned blocks = 0;
    if (!msg.decodeMessageCount(count) || !msg.decodeMessageNumber(number) ||
        !msg.decodeTotalSatCount(total) || !msg.decodeSatCount(blocks)) {
        return false;
    }
    if (number == 1) {
        m_state->messageCount = count;
        m_state->lastMessageNumber = 0;
        m_state->totalSatCount = total;
        m_state->satMap.clear();
    } else if (count != m_state->messageCount || total != m_state->totalSatCount ||
               number != m_state->lastMessageNumber + 1) {
        return false;
    }
    for (unsigned i = 0; i < blocks; ++i) {
        unsigned prn = 0;
        sat_t sat;
        if (decodeSat(msg, i, prn, sat)) {
            m_state->satMap[prn] = sat;
        }
    }
    m_state->lastMessageNumber = number;
    return true;
}

bool gsvSet_t::isComplete() const {
    return m_state->messageCount != 0 && m_state->lastMessageNumber == m_state->messageCount &&
           m_state->totalSatCount == m_state->satMap.size();
}

const std::map<unsigned, gsvSet_t::sat_t>& gsvSet_t::sats() const { return m_state->satMap; }

void gsvSet_t::resetState() {
    m_state->messageCount = 0;
    m_state->lastMessageNumber = 0;
    m_state->totalSatCount = 0;
    m_state->satMap.clear();
}

} // namespace kalo
