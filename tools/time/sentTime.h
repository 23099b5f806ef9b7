// What a record says about time, as it was sent.
#pragma once

#include <cmath>
#include <limits>
#include <string_view>

#include "kalo/time/dateTime.h"

/// A time of day with the digits of its seconds, which the output keeps.
struct sentTime_t {
    kalo::timeOfDay_t time;
    unsigned second = 0;       ///< the digits before the point
    std::string_view fraction; ///< the digits behind it; they live as long as the record
};

/// Sets the digits of the seconds from a text that is hhmmss and perhaps a point and digits.
inline void setDigits(std::string_view text, sentTime_t& out) {
    constexpr std::size_t secondsAt = 4;
    constexpr std::size_t fractionAt = 7;
    out.second = static_cast<unsigned>(text[secondsAt] - '0') * 10 +
                 static_cast<unsigned>(text[secondsAt + 1] - '0');
    out.fraction = text.size() > fractionAt ? text.substr(fractionAt) : std::string_view();
}

/// A number that orders instants, in Unix seconds. A second of 60 has the Unix time of the next
/// minute, but comes before it, on the day of its own minute.
inline double placeInTime(double unixTime, double second) {
    return second < 60
               ? unixTime
               : std::nextafter(std::floor(unixTime), std::numeric_limits<double>::lowest());
}

/// What a record and its line say about time.
struct timeClue_t {
    bool hasTime = false;
    bool hasDate =
        false; ///< the record has a date of its own, even if the calendar does not have it
    bool isVoid = false;      ///< the record is void, so its date may be wrong
    bool hasStamp = false;    ///< the line tells when it was received
    bool isBareStamp = false; ///< a number of ten digits, which may be a counter
    sentTime_t time;
    kalo::date_t date;
    double stamp = 0; ///< its place in time
};
