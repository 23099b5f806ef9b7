#include "kalo/ntrip/ntripCarrierType.h"

#include <ostream>

namespace {

const char* textOf(kalo::ntripCarrierType_t value) {
    switch (value) {
    case kalo::carrierNone: return "None";
    case kalo::carrierL1: return "L1";
    case kalo::carrierL1L2: return "L1L2";
    }
    return "Unknown";
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const kalo::ntripCarrierType_t& value) {
    return stream << textOf(value);
}
