#include "kalo/nmea/gsvMsg.h"

#include <limits>

#include "kalo/nmea/fieldAccess.h"

namespace kalo {

namespace {

constexpr unsigned blockSize = 4;
constexpr unsigned noField = std::numeric_limits<unsigned>::max(); // beyond every sentence

// The field at `offset` in a block; the first block follows the four fields of the head.
unsigned fieldOfBlock(unsigned block, unsigned offset) {
    constexpr unsigned lastBlock = (noField - 2 * blockSize) / blockSize;
    return block > lastBlock ? noField : blockSize + block * blockSize + offset;
}

} // namespace

gsvMsg_t::gsvMsg_t(const nmeaFormat_t& format) : nmeaMsg_t(msgTypeGsv, format) {}

gsvMsg_t::~gsvMsg_t() = default;

bool gsvMsg_t::decodeMessageCount(unsigned& out) const { return decodeDecimal(*this, 1, out); }

bool gsvMsg_t::decodeMessageNumber(unsigned& out) const { return decodeDecimal(*this, 2, out); }

bool gsvMsg_t::decodeTotalSatCount(unsigned& out) const { return decodeDecimal(*this, 3, out); }

bool gsvMsg_t::decodeSatCount(unsigned& out) const {
    const unsigned fields = fieldAccess_t::count(*this);
    if (fields % blockSize > 1) {
        return false;
    }
    out = fields / blockSize;
    if (out == 0) {
        return false;
    }
    --out;
    return true;
}

bool gsvMsg_t::decodeSatPrn(unsigned block, unsigned& out) const {
    return decodeDecimal(*this, fieldOfBlock(block, 0), out);
}

bool gsvMsg_t::decodeSatElevation(unsigned block, double& out) const {
    return decodeRadians(*this, fieldOfBlock(block, 1), out);
}

bool gsvMsg_t::decodeSatAzimuth(unsigned block, double& out) const {
    return decodeRadians(*this, fieldOfBlock(block, 2), out);
}

bool gsvMsg_t::decodeSatSnr(unsigned block, double& out) const {
    return decodeReal(*this, fieldOfBlock(block, 3), out);
}

bool gsvMsg_t::decodeSignalId(unsigned& out) const {
    const unsigned fields = fieldAccess_t::count(*this);
    return fields % blockSize == 1 && decodeDecimal(*this, fields - 1, out);
}

} // namespace kalo
