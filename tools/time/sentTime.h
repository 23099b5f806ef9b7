// What a record says about time, as it was sent.
#pragma once

#include <string_view>

#include "kalo/time/dateTime.h"

/// A time of day with the digits of its seconds, which the output keeps.
struct sentTime_t {
    kalo::timeOfDay_t time;
    unsigned second = 0;       ///< the digits before the point
    std::string_view fraction; ///< the digits behind it; they live as long as the record
};

/// What one record and its line tell about time.
struct timeClue_t {
    bool hasTime = false;
    bool hasDate = false;     ///< a date of the record's own, be it in the calendar or not
    bool isVoid = false;      ///< the sender does not vouch for the date
    bool hasStamp = false;    ///< the line tells when it was received
    bool isBareStamp = false; ///< a number of ten digits, which may be a counter
    sentTime_t time;
    kalo::date_t date;
    double stamp = 0; ///< Unix seconds
};
