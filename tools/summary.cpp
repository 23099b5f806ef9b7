#include "tools/summary.h"

#include <numeric>

#include <fmt/format.h>

void summary_t::count(fault_t fault, bool hasView) {
    if (fault != fault_t::none) {
        ++malformed[static_cast<std::size_t>(fault)];
    } else {
        ++(hasView ? decoded : untyped);
    }
}

std::string summary_t::text() const {
    const std::uint64_t faults =
        std::accumulate(malformed.begin(), malformed.end(), std::uint64_t{0});
    std::string reasons;
    for (std::size_t i = 0; i < malformed.size(); ++i) {
        if (malformed[i] > 0) {
            reasons += fmt::format("{}{} {}", reasons.empty() ? " (" : ", ", malformed[i],
                                   faultText(static_cast<fault_t>(i)));
        }
    }
    std::string text =
        fmt::format("{} records: {} decoded, {} untyped, {} malformed{}{}; {} blank lines; "
                    "satellite sets: {} complete, {} incomplete",
                    decoded + untyped + faults, decoded, untyped, faults, reasons,
                    reasons.empty() ? "" : ")", blankLines, completeSets, incompleteSets);
    if (undated > 0) {
        text += fmt::format("; {} records have a time and no date, --date tells it", undated);
    }
    return text;
}
