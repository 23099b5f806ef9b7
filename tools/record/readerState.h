// What a reader of records knows at the beginning of a line. Another reader can go on from there.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "tools/input/pieces.h"
#include "tools/record/satelliteGroups.h"
#include "tools/time/dating.h"

/// All that the records of the lines to come depend on, besides these lines and the options.
struct readerState_t {
    std::uint64_t offset = 0; ///< of the line in its input
    std::optional<std::uint64_t> lineEnds =
        0; ///< in front of the line; empty if they are not known
    splitState_t split;
    datingState_t dating;
    std::vector<openGroup_t> groups; ///< the one that was silent longest first
};

bool operator==(const readerState_t& a, const readerState_t& b);
