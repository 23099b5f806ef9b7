#include "tools/record/readerState.h"

#include <tuple>

namespace {

// Names all members, so that none is forgotten.
auto membersOf(const readerState_t& state) {
    const auto& [offset, lineEnds, split, dating, groups] = state;
    return std::tie(offset, lineEnds, split, dating, groups);
}

} // namespace

bool operator==(const readerState_t& a, const readerState_t& b) {
    return membersOf(a) == membersOf(b);
}
