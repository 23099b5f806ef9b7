// The instruments on board: what each of them says, and how often.

#pragma once

#include "log.h"
#include "vessel.h"

namespace voyage {

/// Writes what every instrument that is due has to say about this second.
void writeEpoch(const vessel_t& vessel, log_t& log);
/// The same of a mix of clean sentences: of a hundred, 15 GGA, 15 RMC, 25 GSV, 8 each of GSA, VTG
/// and HDT, 4 each of ROT, ZDA and GST, 3 GLL, 2 each of DPT, DBT and MWV.
void writeMixedEpoch(const vessel_t& vessel, log_t& log);

} // namespace voyage
