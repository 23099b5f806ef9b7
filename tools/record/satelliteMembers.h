// The values of one satellite in a list of satellites, as a table.
#pragma once

#include <tuple>
#include <utility>

#include "tools/record/valueRow.h"

/// One value of a satellite: the member that holds it, and the one that says whether it is there.
template <auto flag, auto member>
struct satelliteMember_t {
    const char* name;
    unit_t unit;
    const char* meaning;

    static bool isIn(const satellite_t& satellite) { return satellite.*flag; }
    static auto valueOf(const satellite_t& satellite) { return satellite.*member; }
};

constexpr std::tuple satelliteMembers{
    satelliteMember_t<&satellite_t::hasPrn, &satellite_t::prn>{"prn", noUnit, "identifier"},
    satelliteMember_t<&satellite_t::hasElevation, &satellite_t::elevation>{"elevation", angle,
                                                                           "above the horizon"},
    satelliteMember_t<&satellite_t::hasAzimuth, &satellite_t::azimuth>{"azimuth", angle,
                                                                       "from true north"},
    satelliteMember_t<&satellite_t::hasSnr, &satellite_t::snr>{"snr", decibelHertz,
                                                               "signal-to-noise ratio"}};

/// A value of a satellite as a type, like a column of the record table.
template <std::size_t index>
struct satelliteColumn_t {
    static constexpr const auto& row = std::get<index>(satelliteMembers);
    static constexpr std::size_t position = index;
    using value_t = decltype(row.valueOf(std::declval<satellite_t>()));
};

template <typename Use, std::size_t... index>
constexpr void forEachSatelliteColumn(Use use, std::index_sequence<index...> /*all*/) {
    (use(satelliteColumn_t<index>{}), ...);
}
/// Calls `use(column)` for each value that a satellite may have, in their order.
template <typename Use>
constexpr void forEachSatelliteColumn(Use use) {
    constexpr std::size_t count = std::tuple_size_v<decltype(satelliteMembers)>;
    forEachSatelliteColumn(use, std::make_index_sequence<count>{});
}
