#include "tools/analysis/satelliteSystem.h"

namespace {

constexpr struct {
    std::string_view talker;
    const char* name;
} talkers[] = {{"GL", "GLONASS"}, {"GA", "Galileo"}, {"GB", "BeiDou"}, {"BD", "BeiDou"},
               {"GQ", "QZSS"},    {"QZ", "QZSS"},    {"GI", "NavIC"}};

constexpr struct {
    unsigned first;
    unsigned last;
    const char* name;
} ranges[] = {
    {1, 32, "GPS"}, {33, 64, "SBAS"}, {65, 96, "GLONASS"}, {120, 158, "SBAS"}, {193, 202, "QZSS"}};

} // namespace

const char* systemName(std::string_view talker, unsigned identifier) {
    for (const auto& row : talkers) {
        if (row.talker == talker) {
            return row.name;
        }
    }
    if (talker == "GP" || talker == "GN") {
        for (const auto& range : ranges) {
            if (identifier >= range.first && identifier <= range.last) {
                return range.name;
            }
        }
    }
    return nullptr;
}

std::string systemOf(std::string_view talker, unsigned identifier) {
    const char* const name = systemName(talker, identifier);
    return name == nullptr ? std::string(talker) : name;
}
