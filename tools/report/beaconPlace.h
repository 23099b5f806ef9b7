// Where acoustic beacons were.
#pragma once

#include <optional>
#include <string>

#include "tools/analysis/voyage.h"
#include "tools/record/record.h"

/// What the place of a beacon is counted from.
enum class beaconFrame_t : unsigned {
    bow,       ///< of the vessel: ahead and to starboard
    north,     ///< of the vessel: to the north and to the east
    localGrid, ///< a point that the record does not name: to the north and to the east
    utm,       ///< northing and easting
    xy         ///< X and Y of a tracking record
};

struct beaconPlace_t {
    std::string name;
    beaconFrame_t frame = beaconFrame_t::bow;
    std::optional<double> time; ///< Unix seconds
    double right = 0;           ///< metres; X of a tracking record
    double up = 0;
};

/// Whether it is a record of a type that gives the place of a beacon.
bool isBeacon(const record_t& record);

/// The place in such a record, without its time; empty if it gives none. `vessel` is where the
/// vessel is. A place in degrees is not read without it.
std::optional<beaconPlace_t> readBeacon(const record_t& record, scratch_t& scratch,
                                        const std::optional<place_t>& vessel);
