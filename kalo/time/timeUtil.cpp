#include "kalo/time/timeUtil.h"

#include <ctime>

#include "kalo/time/dateTime.h"

namespace kalo {

unsigned currentCentury() {
    // The conversion to a date is spared while this program is likely to run.
    constexpr double year2000 = 946684800;
    constexpr double year2100 = 4102444800;
    const auto now = static_cast<double>(std::time(nullptr));
    return now >= year2000 && now < year2100 ? 2000 : dateTime_t(now).date.year / 100 * 100;
}

unsigned twoDigitYearToAD(unsigned year, unsigned cutoff) {
    if (year > 99) {
        return year;
    }
    const unsigned century = currentCentury();
    return (year >= cutoff ? century - 100 : century) + year;
}

} // namespace kalo
