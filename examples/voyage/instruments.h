// The instruments on board: what each of them says, and how often.

#pragma once

#include "log.h"
#include "vessel.h"

namespace voyage {

/// Writes what every instrument that is due has to say about this second.
void writeEpoch(const vessel_t& vessel, log_t& log);

} // namespace voyage
