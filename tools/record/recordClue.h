// Reads the values of a record that are decoded only once.
#pragma once

#include <vector>

#include "tools/record/record.h"

/// The time and date of a sentence with a view, and the satellites of a GSV, which `satellites`
/// then owns.
void readSentenceClue(const kalo::nmeaFormat_t& sentence, typeIndex_t type,
                      std::vector<satellite_t>& satellites, clue_t& clue);

/// The time and date of a tracking record; `milliseconds` then owns the digits of its fraction.
void readTrackingClue(const kalo::atsAsciiMsg_t& tracking, char (&milliseconds)[3], clue_t& clue);
