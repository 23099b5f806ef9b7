#include "kalo/ntrip/ntripSolutionType.h"

#include <ostream>

namespace {

const char* textOf(kalo::ntripSolutionType_t value) {
    switch (value) {
    case kalo::solutionSingle: return "Single";
    case kalo::solutionNetwork: return "Network";
    }
    return "Unknown";
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const kalo::ntripSolutionType_t& value) {
    return stream << textOf(value);
}
