#include "tools/calendarDate.h"

#include <string>

#include "kalo/util/stringUtil.h"

bool isInCalendar(const kalo::date_t& date) {
    constexpr unsigned lastYear = 9999;
    if (date.year > lastYear || date.month > 12 || date.day > 31) {
        return false;
    }
    const kalo::date_t same = kalo::dateTime_t(kalo::dateTime_t(date, {}).toTimestamp()).date;
    return same.year == date.year && same.month == date.month && same.day == date.day;
}

bool parseDate(std::string_view text, kalo::date_t& out) {
    const auto part = [&](std::size_t from, std::size_t length, unsigned& number) {
        const std::string digits(text.substr(from, length));
        return digits.find_first_not_of("0123456789") == std::string::npos &&
               kalo::decode(digits, number, 10);
    };
    return text.size() == 10 && text[4] == '-' && text[7] == '-' && part(0, 4, out.year) &&
           part(5, 2, out.month) && part(8, 2, out.day) && isInCalendar(out);
}
