// What a finished group of satellites holds.
#pragma once

#include "tools/record/satelliteGroups.h"
#include "tools/record/valueRow.h"

inline bool signalIdOfGroup(const satelliteGroup_t& group, unsigned& out) {
    out = group.signalId;
    return group.hasSignalId;
}

inline bool inViewOfGroup(const satelliteGroup_t& group, unsigned& out) {
    out = group.inView;
    return true;
}

inline bool satellitesOfGroup(const satelliteGroup_t& group, satelliteList_t& out) {
    const satellite_t* const first = group.satellites.data();
    out = {first, first + group.satellites.size()};
    return true;
}

struct satellitesRecord_t {
    using view_t = satelliteGroup_t;
    static constexpr std::string_view name = "SATELLITES";
    static constexpr std::string_view meaning =
        "satellites in view, from a whole group of GSV sentences";
    static constexpr std::tuple rows{
        row_t<signalIdOfGroup>{"signalId", noUnit, 0,
                               "signal identifier, if the sentences have one"},
        row_t<inViewOfGroup>{"inView", noUnit, 0, "number of satellites that the group announces"},
        row_t<satellitesOfGroup>{
            "satellites", noUnit, 0,
            "satellites with known angles: prn, elevation and azimuth (deg), snr (dB-Hz)"}};
};
