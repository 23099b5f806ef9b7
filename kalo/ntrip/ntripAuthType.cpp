#include "kalo/ntrip/ntripAuthType.h"

#include <ostream>

namespace {

const char* textOf(kalo::ntripAuthType_t value) {
    switch (value) {
    case kalo::authNone: return "None";
    case kalo::authBasic: return "Basic";
    case kalo::authDigest: return "Digest";
    }
    return "Unknown";
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const kalo::ntripAuthType_t& value) {
    return stream << textOf(value);
}
