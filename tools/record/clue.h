// The values of a record that are decoded once and used for its dating, for the groups of
// satellites and for its output.
#pragma once

#include <string>
#include <vector>

#include "tools/time/sentTime.h"

/// One satellite in view. A member is set only if its flag is.
struct satellite_t {
    bool hasPrn = false;
    bool hasElevation = false;
    bool hasAzimuth = false;
    bool hasSnr = false;
    unsigned prn = 0;
    double elevation = 0; ///< radians
    double azimuth = 0;   ///< radians
    double snr = 0;       ///< dB-Hz
};

/// Satellites, owned elsewhere.
struct satelliteList_t {
    const satellite_t* first = nullptr;
    const satellite_t* last = nullptr;

    const satellite_t* begin() const { return first; }
    const satellite_t* end() const { return last; }
};

struct clue_t : timeClue_t {
    satelliteList_t satellites; ///< of a GSV sentence
    bool lostSatellite = false; ///< a value of a satellite was sent but did not decode
};

/// Memory for values that need it, reused from one value to the next.
struct scratch_t {
    std::string text;
    std::vector<unsigned> list;

    std::string& place(std::string& /*unused*/) {
        text.clear();
        return text;
    }
    std::vector<unsigned>& place(std::vector<unsigned>& /*unused*/) {
        list.clear();
        return list;
    }
    template <typename Value>
    Value& place(Value& value) {
        return value;
    }
};
