// The counts behind the closing line of a run.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "tools/recordSplitter.h"

struct summary_t {
    std::uint64_t decoded = 0;
    std::uint64_t untyped = 0;
    std::array<std::uint64_t, faultCount> malformed{};
    std::uint64_t blankLines = 0;
    std::uint64_t completeSets = 0;
    std::uint64_t incompleteSets = 0;
    std::uint64_t undated = 0; ///< records with a time of day that no date was known for

    void count(fault_t fault, bool hasView);

    /// "12 records: 9 decoded, 1 untyped, 2 malformed (2 cut); 0 blank lines; ..."
    std::string text() const;
};
