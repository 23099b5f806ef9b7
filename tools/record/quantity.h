// The values that describe a voyage, whatever type of record they come from: where the vessel was,
// how it moved, what its instruments measured.
#pragma once

#include <array>
#include <cstddef>
#include <iterator>
#include <limits>
#include <string_view>

#include "tools/record/degrees.h"

enum class quantity_t : unsigned {
    latitude,
    longitude,
    altitude,
    quality,
    satCount,
    hdop,
    speedOverGround,
    courseOverGround,
    heading,
    rateOfTurn,
    roll,
    pitch,
    heave,
    depth,
    windSpeed,
    speedThroughWater,
    waterTemperature,
    windDirection,
    pdop,
    vdop,
    diffAge,
    latitudeError,
    longitudeError,
    altitudeError,
    validity, ///< a letter, like the next ones
    fixMode,
    status,
    windReference,
    none
};
constexpr std::size_t quantityCount = static_cast<std::size_t>(quantity_t::none);

/// Its name for people, how it is printed, and its possible range at sea.
struct quantityRow_t {
    std::string_view name; ///< of the value in the record table
    const char* title;     ///< null for letters and for quantities without a range
    const char* unit;
    bool isAngle; ///< radians, printed in degrees
    double least; ///< in the printed unit
    double greatest;
};

constexpr double unlimited = std::numeric_limits<double>::infinity();

/// In the order of `quantity_t`.
//
// No vessel can have a value outside these ranges. The sea surface stays within some metres of the
// geoid, but antennas stand on masts. The deepest water is 10,935 m, the highest wind measured at
// sea 94 m/s, the speed of a destroyer 24 m/s and that of the fastest boats 142 m/s.
constexpr std::array<quantityRow_t, quantityCount> quantityRows = {{
    {"latitude", nullptr, "deg", true, -90, 90},
    {"longitude", nullptr, "deg", true, -180, 180},
    {"altitude", "altitude", "m", false, -200, 9000},
    {"quality", "fix quality", "", false, 0, 8},
    {"satCount", "satellites used", "", false, 0, 100},
    {"hdop", "HDOP", "", false, 0, 100},
    {"speedOverGround", "speed over ground", "m/s", false, 0, 150},
    {"courseOverGround", "course over ground", "deg", true, 0, 360},
    {"heading", "heading", "deg", true, 0, 360},
    {"rateOfTurn", "rate of turn", "deg/s", true, -90, 90},
    {"roll", "roll", "deg", true, -90, 90},
    {"pitch", "pitch", "deg", true, -90, 90},
    {"heave", "heave", "m", false, -30, 30},
    {"depth", "depth", "m", false, 0, 11000},
    {"windSpeed", "wind speed", "m/s", false, 0, 115},
    {"speedThroughWater", "speed through water", "m/s", false, -20, 60},
    {"waterTemperature", "water temperature", "deg C", false, -5, 50},
    {"windDirection", nullptr, "deg", true, -unlimited, unlimited},
    {"pdop", nullptr, "", false, -unlimited, unlimited},
    {"vdop", nullptr, "", false, -unlimited, unlimited},
    {"diffAge", nullptr, "s", false, -unlimited, unlimited},
    {"latitudeError", nullptr, "m", false, -unlimited, unlimited},
    {"longitudeError", nullptr, "m", false, -unlimited, unlimited},
    {"altitudeError", nullptr, "m", false, -unlimited, unlimited},
    {"validity", nullptr, "", false, 0, 255},
    {"fixMode", nullptr, "", false, 0, 255},
    {"status", nullptr, "", false, 0, 255},
    {"windReference", nullptr, "", false, 0, 255},
}};

struct quantityName_t {
    std::string_view name;
    quantity_t quantity;
    std::string_view
        onlyOf{}; ///< the only type in which this name has this meaning; empty: all types
};

// In some types the same name means something else: the quality of PTNL sentences has other codes,
// and GSV counts the satellites in one sentence. Latitudes and longitudes: see `positionTypes`.
constexpr quantityName_t quantityNames[] = {
    {"altitude", quantity_t::altitude},
    {"quality", quantity_t::quality, "GGA"},
    {"quality", quantity_t::quality, "PZWBGGA"},
    {"satCount", quantity_t::satCount, "GGA"},
    {"satCount", quantity_t::satCount, "PZWBGGA"},
    {"satCount", quantity_t::satCount, "GNS"},
    {"hdop", quantity_t::hdop},
    {"speedOverGround", quantity_t::speedOverGround},
    {"courseOverGround", quantity_t::courseOverGround},
    {"trueCourseOverGround", quantity_t::courseOverGround},
    {"heading", quantity_t::heading},
    {"rateOfTurn", quantity_t::rateOfTurn},
    {"roll", quantity_t::roll},
    {"pitch", quantity_t::pitch},
    {"heave", quantity_t::heave},
    {"depth", quantity_t::depth},
    {"windSpeed", quantity_t::windSpeed},
    {"speedThroughWater", quantity_t::speedThroughWater},
    {"waterTemperature", quantity_t::waterTemperature},
    {"windDirection", quantity_t::windDirection},
    {"trueWindDirection", quantity_t::windDirection},
    {"windAngle", quantity_t::windDirection},
    {"pdop", quantity_t::pdop},
    {"vdop", quantity_t::vdop},
    {"diffAge", quantity_t::diffAge},
    {"latitudeError", quantity_t::latitudeError, "GST"},
    {"latitudeError", quantity_t::latitudeError, "PZWBGST"},
    {"longitudeError", quantity_t::longitudeError, "GST"},
    {"longitudeError", quantity_t::longitudeError, "PZWBGST"},
    {"altitudeError", quantity_t::altitudeError, "GST"},
    {"altitudeError", quantity_t::altitudeError, "PZWBGST"},
    {"validity", quantity_t::validity},
    {"fixMode", quantity_t::fixMode},
    {"status", quantity_t::status, "PSIMSSB"},
    {"reference", quantity_t::windReference, "MWV"}};

/// The types that tell where the vessel is, the best one first: it gives the position of an epoch.
/// Other types give the positions of waypoints, beacons and base stations.
constexpr std::string_view positionTypes[] = {"GGA",     "PZWBGGA", "GNS", "RMC",    "GLL",
                                              "PTNLGGK", "PUBX00",  "RMA", "PSTI030"};

/// The index of the type in `positionTypes`; the size of that list for other types.
constexpr std::size_t positionRankOf(std::string_view type) {
    std::size_t rank = 0;
    while (rank < std::size(positionTypes) && positionTypes[rank] != type) {
        ++rank;
    }
    return rank;
}

constexpr quantity_t quantityOf(std::string_view type, std::string_view name) {
    if (positionRankOf(type) < std::size(positionTypes)) {
        if (name == "latitude") {
            return quantity_t::latitude;
        }
        if (name == "longitude") {
            return quantity_t::longitude;
        }
    }
    for (const quantityName_t& row : quantityNames) {
        if (row.name == name && (row.onlyOf.empty() || row.onlyOf == type)) {
            return row.quantity;
        }
    }
    return quantity_t::none;
}

constexpr const quantityRow_t& rowOf(quantity_t quantity) {
    return quantityRows[static_cast<std::size_t>(quantity)];
}

/// A value in the unit that is printed.
constexpr double printedValue(quantity_t quantity, double value) {
    return rowOf(quantity).isAngle ? value * degreesPerRadian : value;
}
