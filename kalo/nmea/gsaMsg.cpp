#include "kalo/nmea/gsaMsg.h"

#include "kalo/nmea/fieldAccess.h"

namespace kalo {

namespace {

constexpr unsigned firstSatId = 3;
constexpr unsigned satIdCount = 12;

} // namespace

gsaMsg_t::gsaMsg_t(const nmeaFormat_t& format) : nmeaMsg_t(msgTypeGsa, format) {}

gsaMsg_t::~gsaMsg_t() = default;

bool gsaMsg_t::decodeManualMode(char& out) const { return decodeLetter(*this, 1, out); }

bool gsaMsg_t::decodeFixMode(unsigned& out) const { return decodeDecimal(*this, 2, out); }

bool gsaMsg_t::decodeSatIds(std::vector<unsigned>& out) const {
    for (unsigned i = firstSatId; i < firstSatId + satIdCount; ++i) {
        const std::string* const id = fieldAccess_t::text(*this, i);
        if (id == nullptr) {
            return false;
        }
        if (id->empty()) {
            continue;
        }
        unsigned number = 0;
        if (!decodeDecimalText(*id, number)) {
            return false;
        }
        out.push_back(number);
    }
    return true;
}

bool gsaMsg_t::decodePdop(double& out) const { return decodeReal(*this, 15, out); }

bool gsaMsg_t::decodeHdop(double& out) const { return decodeReal(*this, 16, out); }

bool gsaMsg_t::decodeVdop(double& out) const { return decodeReal(*this, 17, out); }

bool gsaMsg_t::decodeSignalId(unsigned& out) const { return decodeDecimal(*this, 18, out); }

} // namespace kalo
