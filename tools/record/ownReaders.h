// Readers of the time and the date, which are decoded only once for each record.
#pragma once

#include "tools/record/clue.h"

inline bool ownTime(const clue_t& clue, sentTime_t& out) {
    out = clue.time;
    return clue.hasTime;
}

inline bool ownDate(const clue_t& clue, kalo::date_t& out) {
    out = clue.date;
    return clue.hasDate;
}
