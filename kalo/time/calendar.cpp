#include "kalo/time/calendar.h"

namespace kalo {

namespace {

// The calendar repeats after 400 years. Counting years from March puts the leap day at the end of
// one, so that the days before a month depend only on its number.
constexpr std::int64_t yearsPerEra = 400;
constexpr std::int64_t daysPerEra = 146097;
constexpr std::int64_t epochFromEra = 719468; // 0000-03-01 to 1970-01-01

constexpr std::int64_t floorDiv(std::int64_t a, std::int64_t b) {
    return a / b - (a % b < 0 ? 1 : 0);
}

// Days from March 1st to the first of a month, months counted from March.
constexpr std::int64_t daysBeforeMonth(std::int64_t monthFromMarch) {
    return (153 * monthFromMarch + 2) / 5;
}

} // namespace

std::int64_t daysFromDate(const date_t& date) {
    // Months since March of the year 0.
    const std::int64_t months = std::int64_t{date.year} * 12 + date.month - 3;
    const std::int64_t year = floorDiv(months, 12);
    const std::int64_t era = floorDiv(year, yearsPerEra);
    const std::int64_t yearOfEra = year - era * yearsPerEra;
    const std::int64_t dayOfYear = daysBeforeMonth(months - year * 12) + date.day - 1;
    const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * daysPerEra + dayOfEra - epochFromEra;
}

date_t dateFromDays(std::int64_t days) {
    const std::int64_t sinceEra = days + epochFromEra;
    const std::int64_t era = floorDiv(sinceEra, daysPerEra);
    const std::int64_t dayOfEra = sinceEra - era * daysPerEra;
    const std::int64_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / (daysPerEra - 1)) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
    const std::int64_t month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
    const std::int64_t year = era * yearsPerEra + yearOfEra + (month <= 2 ? 1 : 0);
    return {static_cast<std::uint32_t>(year), static_cast<std::uint32_t>(month),
            static_cast<std::uint32_t>(dayOfYear - daysBeforeMonth(monthFromMarch) + 1)};
}

} // namespace kalo
