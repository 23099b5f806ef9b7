#include "tools/time/calendarDate.h"

namespace {

constexpr unsigned daysOfMonth[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

bool isLeapYear(unsigned year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

bool parseDigits(std::string_view text, unsigned& out) {
    out = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') {
            return false;
        }
        out = out * 10 + static_cast<unsigned>(c - '0');
    }
    return true;
}

} // namespace

bool isInCalendar(const kalo::date_t& date) {
    constexpr unsigned february = 2;
    return date.year <= lastYear && date.month >= 1 && date.month <= 12 && date.day >= 1 &&
           date.day <= daysOfMonth[date.month - 1] &&
           (date.month != february || date.day < 29 || isLeapYear(date.year));
}

bool parseDate(std::string_view text, kalo::date_t& out) {
    return text.size() == 10 && text[4] == '-' && text[7] == '-' &&
           parseDigits(text.substr(0, 4), out.year) && parseDigits(text.substr(5, 2), out.month) &&
           parseDigits(text.substr(8, 2), out.day) && isInCalendar(out);
}
