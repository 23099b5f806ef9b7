#include "kalo/time/timeUtil.h"

#include <ctime>

#include "kalo/time/dateTime.h"

namespace kalo {

unsigned currentCentury() {
    const dateTime_t now(static_cast<double>(std::time(nullptr)));
    return now.date.year / 100 * 100;
}

unsigned twoDigitYearToAD(unsigned year, unsigned cutoff) {
    if (year > 99) {
        return year;
    }
    const unsigned century = currentCentury();
    return (year >= cutoff ? century - 100 : century) + year;
}

} // namespace kalo
