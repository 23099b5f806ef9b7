// `kalo track`: the way of a vessel for maps.
#pragma once

#include <string>
#include <vector>

#include "tools/analysis/thinning.h"
#include "tools/command/recordInputs.h"
#include "tools/output/output.h"

enum class trackFormat_t { geojson, gpx, kml };

struct trackCommandOptions_t {
    std::vector<std::string> files; ///< "-" is standard input
    outputOptions_t output;
    inputOptions_t read;
    thinningOptions_t thinning;
    trackFormat_t format = trackFormat_t::geojson;
};

/// Returns the exit status.
int trackCommand(const trackCommandOptions_t& options);
