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
    static constexpr const char* name = "SATELLITES";
    static constexpr const char* meaning = "a group of satellites in view";
    static constexpr std::tuple rows{
        row_t<signalIdOfGroup>{"signalId", noUnit, 0, "signal, where the sentences carry it"},
        row_t<inViewOfGroup>{"inView", noUnit, 0, "how many satellites the group announces"},
        row_t<satellitesOfGroup>{
            "satellites", noUnit, 0,
            "those with angles: prn, elevation and azimuth (deg), snr (dB-Hz)"}};
};
