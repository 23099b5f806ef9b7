#include "kalo/ntrip/ntripStreamDecoder.h"

namespace kalo {

namespace {

constexpr unsigned carrierIndex = 5;
constexpr unsigned solutionIndex = 12;
constexpr unsigned authIndex = 15;

// A number as a value of an enumeration whose last one is `last`.
template <typename Enumeration>
bool decodeEnumeration(const ntripRecordDecoder_t& record, unsigned index, Enumeration last,
                       Enumeration& out) {
    unsigned number = 0;
    if (!record.decodeField(index, number) || number > static_cast<unsigned>(last)) {
        return false;
    }
    out = static_cast<Enumeration>(number);
    return true;
}

} // namespace

bool ntripStreamDecoder_t::decodeCarrierType(ntripCarrierType_t& out) const {
    return decodeEnumeration(*this, carrierIndex, carrierL1L2, out);
}

bool ntripStreamDecoder_t::decodeSolutionType(ntripSolutionType_t& out) const {
    return decodeEnumeration(*this, solutionIndex, solutionNetwork, out);
}

bool ntripStreamDecoder_t::decodeAuthType(ntripAuthType_t& out) const {
    static constexpr struct {
        const char* text;
        ntripAuthType_t type;
    } rows[] = {{"N", authNone}, {"B", authBasic}, {"D", authDigest}};
    const std::string* field = fieldAt(authIndex);
    if (field == nullptr) {
        return false;
    }
    for (const auto& row : rows) {
        if (*field == row.text) {
            out = row.type;
            return true;
        }
    }
    return false;
}

} // namespace kalo
