#include "tools/input/stamp.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "tools/input/text.h"
#include "tools/time/calendarDate.h"

namespace {

// A cursor over a text. Each step returns whether it moved.
class cursor_t {
public:
    cursor_t(std::string_view text, std::size_t at) : m_text(text), m_at(at) {}

    std::size_t at() const { return m_at; }
    bool isAtEnd() const { return m_at >= m_text.size(); }
    char current() const { return isAtEnd() ? '\0' : m_text[m_at]; }

    bool one(char c) {
        const bool fits = !isAtEnd() && m_text[m_at] == c;
        m_at += fits ? 1 : 0;
        return fits;
    }

    bool oneOf(const charSet_t& characters) {
        const bool fits = !isAtEnd() && characters.holds(m_text[m_at]);
        m_at += fits ? 1 : 0;
        return fits;
    }

    bool word(std::string_view word) {
        const bool fits = m_text.substr(std::min(m_at, m_text.size()), word.size()) == word;
        m_at += fits ? word.size() : 0;
        return fits;
    }

    // A number with this many digits.
    bool number(unsigned digits, unsigned& out) {
        out = 0;
        for (unsigned i = 0; i < digits; ++i, ++m_at) {
            if (isAtEnd() || !isDigit(m_text[m_at])) {
                return false;
            }
            out = out * 10 + static_cast<unsigned>(m_text[m_at] - '0');
        }
        return true;
    }

    // All digits that follow.
    std::string_view digits() {
        const std::size_t begin = m_at;
        while (!isAtEnd() && isDigit(m_text[m_at])) {
            ++m_at;
        }
        return m_text.substr(begin, m_at - begin);
    }

private:
    std::string_view m_text;
    std::size_t m_at;
};

constexpr charSet_t betweenDateAndTime("Tt_:Z ");
constexpr charSet_t point(".");
constexpr charSet_t pointOrUnderscore("._");
constexpr charSet_t signs("+-");
constexpr charSet_t colonOrPlus(":+");
constexpr charSet_t dateSeparators("/-.");
constexpr charSet_t blankOrComma(" ,");

// hh:mm:ss or hhmmss.
bool readClock(cursor_t& at, bool hasColons, stamp_t& out) {
    return at.number(2, out.hour) && (!hasColons || at.one(':')) && at.number(2, out.minute) &&
           (!hasColons || at.one(':')) && at.number(2, out.second) && out.hour < 24 &&
           out.minute < 60 && out.second <= 60;
}

// How a stamp is read.
struct reading_t {
    const stampRules_t& rules;
    bool takesComma; // in front of the fraction
};

// The digits of the fraction. A comma stands in front of them only where it cannot separate
// columns.
bool readFraction(cursor_t& at, const charSet_t& marks, const reading_t& how, stamp_t& out) {
    constexpr std::size_t longest = 9;
    cursor_t behind = at;
    if (behind.oneOf(marks)) {
        out.fraction = behind.digits();
        at = behind;
        return !out.fraction.empty() && out.fraction.size() <= longest;
    }
    if (how.takesComma && behind.one(',')) {
        const std::string_view digits = behind.digits();
        const bool isFraction = !digits.empty() && digits.size() <= longest &&
                                digits.size() % 3 == 0 && behind.current() != ',';
        if (isFraction) {
            out.fraction = digits;
            at = behind;
        }
    }
    return true;
}

// The zone, which may be missing; `minutes` is how far it is ahead of UTC.
bool readZone(cursor_t& at, stamp_t& out, int& minutes) {
    minutes = 0;
    cursor_t behind = at;
    const auto isWord = [&](std::string_view word) {
        return behind.word(word) && !isLetter(behind.current()) && !isDigit(behind.current()) &&
               behind.current() != '+' && behind.current() != '-';
    };
    if (behind.one('Z') || isWord(" UTC") || isWord(" GMT")) {
        out.statesZone = true;
        at = behind;
        return true;
    }
    behind = at;
    const int sign = behind.current() == '-' ? -1 : 1;
    unsigned hours = 0;
    unsigned rest = 0;
    if (!behind.oneOf(signs)) {
        return true;
    }
    if (!behind.number(2, hours) || hours > 23) {
        return false;
    }
    at = behind;
    behind.one(':');
    if (behind.number(2, rest) && rest < 60) {
        at = behind;
    } else {
        rest = 0;
    }
    out.statesZone = true;
    minutes = sign * static_cast<int>(hours * 60 + rest);
    return true;
}

// Date and clock are set. Computes the instant, and subtracts the offset of the zone.
bool complete(stamp_t& out, int offsetMinutes = 0) {
    constexpr double firstMinute = -62167219200; // 0000-01-01T00:00
    constexpr double lastMinute = 253402300740;  // 9999-12-31T23:59
    if (!isInCalendar(out.date)) {
        return false;
    }
    const double minute =
        kalo::dateTime_t(out.date, {out.hour, out.minute, 0}).toTimestamp() - offsetMinutes * 60.0;
    if (offsetMinutes != 0) {
        if (minute < firstMinute || minute > lastMinute) {
            return false; // its year does not have four digits
        }
        const kalo::dateTime_t utc(minute);
        out.date = utc.date;
        out.hour = utc.timeOfDay.hour;
        out.minute = utc.timeOfDay.minute;
    }
    double fraction = 0;
    double unit = 1;
    for (const char c : out.fraction) {
        fraction = fraction * 10 + (c - '0');
        unit *= 10;
    }
    out.unixTime = minute + out.second + fraction / unit;
    out.hasDate = true;
    return true;
}

// Each function reads one shape and leaves the cursor after it. The caller judges whether a stamp
// may end there.

// 2026-03-14T23:59:58.412Z, and with other separators.
bool readDashes(cursor_t& at, char separator, const reading_t& how, stamp_t& out) {
    int offset = 0;
    return at.number(4, out.date.year) && at.one(separator) && at.number(2, out.date.month) &&
           at.one(separator) && at.number(2, out.date.day) && at.oneOf(betweenDateAndTime) &&
           readClock(at, true, out) && readFraction(at, point, how, out) &&
           readZone(at, out, offset) && complete(out, offset);
}

bool readIso(cursor_t& at, const reading_t& how, stamp_t& out) {
    return readDashes(at, '-', how, out);
}

bool readSlashes(cursor_t& at, const reading_t& how, stamp_t& out) {
    return readDashes(at, '/', how, out);
}

// 20260314T235958_012, 20260314 23:59:58, 20160322 - 07:09:12, 20220729191502
bool readCompact(cursor_t& at, const reading_t& how, stamp_t& out) {
    if (!at.number(4, out.date.year) || !at.number(2, out.date.month) ||
        !at.number(2, out.date.day)) {
        return false;
    }
    if (!at.word(" - ")) {
        at.oneOf(betweenDateAndTime);
    }
    cursor_t plain = at;
    int offset = 0;
    if (!readClock(at, true, out)) {
        at = plain;
        if (!readClock(at, false, out)) {
            return false;
        }
    }
    return readFraction(at, pointOrUnderscore, how, out) && readZone(at, out, offset) &&
           complete(out, offset);
}

// 2010:258:00:00:00.6557, the second part being the day of the year.
bool readDayOfYear(cursor_t& at, const reading_t& how, stamp_t& out) {
    unsigned day = 0;
    if (!at.number(4, out.date.year) || !at.oneOf(colonOrPlus) || !at.number(3, day) || day == 0 ||
        !at.one(':') || !readClock(at, true, out) || !readFraction(at, point, how, out)) {
        return false;
    }
    const kalo::date_t date =
        kalo::dateTime_t(kalo::dateTime_t({out.date.year, 1, day}, {}).toTimestamp()).date;
    const bool isOfYear = date.year == out.date.year;
    out.date = date;
    return isOfYear && complete(out);
}

std::optional<kalo::date_t> dateOf(unsigned year, unsigned month, unsigned day) {
    const kalo::date_t date{year, month, day};
    return isInCalendar(date) ? std::optional(date) : std::nullopt;
}

// 05/20/2023,00:00:02.130 and 18/05/2012 18:15:37. With a comma, the month is first unless the
// order is known: the fleet logger that writes this form always puts it first.
bool readEitherOrder(cursor_t& at, const reading_t& how, stamp_t& out) {
    unsigned first = 0;
    unsigned second = 0;
    unsigned year = 0;
    if (!at.number(2, first)) {
        return false;
    }
    const char separator = at.current();
    if (!at.oneOf(dateSeparators) || !at.number(2, second) || !at.one(separator) ||
        !at.number(4, year)) {
        return false;
    }
    const bool hasComma = at.current() == ',';
    if (!at.oneOf(blankOrComma) || !readClock(at, true, out) ||
        !readFraction(at, point, how, out)) {
        return false;
    }
    out.asDayFirst = dateOf(year, second, first);
    out.asMonthFirst = dateOf(year, first, second);
    if (!out.asDayFirst && !out.asMonthFirst) {
        return false;
    }
    if (!out.asDayFirst || !out.asMonthFirst) {
        out.tells = out.asDayFirst ? dateOrder_t::dayFirst : dateOrder_t::monthFirst;
    }
    dateOrder_t order = how.rules.order != dateOrder_t::unknown ? how.rules.order : out.tells;
    if (order == dateOrder_t::unknown && hasComma) {
        order = dateOrder_t::monthFirst;
    }
    if (order == dateOrder_t::unknown) {
        return true;
    }
    const std::optional<kalo::date_t>& date =
        order == dateOrder_t::dayFirst ? out.asDayFirst : out.asMonthFirst;
    out.date = date.value_or(kalo::date_t());
    return date.has_value() && complete(out);
}

// Seconds since 1970 with ten digits and perhaps a fraction, or thousands of them, from 2001 on.
bool readUnix(cursor_t& at, const reading_t& how, stamp_t& out) {
    constexpr std::size_t wholeDigits = 10;
    constexpr double lastSecond = 4294967295; // 2106
    const std::string_view digits = at.digits();
    const std::size_t further = digits.size() - std::min(digits.size(), wholeDigits);
    if (digits.size() < wholeDigits || further > 9 || further % 3 != 0 || digits[0] == '0') {
        return false;
    }
    out.fraction = digits.substr(wholeDigits);
    if (further == 0 && !readFraction(at, point, how, out)) {
        return false;
    }
    out.isBareNumber = out.fraction.empty();
    double seconds = 0;
    for (const char c : digits.substr(0, wholeDigits)) {
        seconds = seconds * 10 + (c - '0');
    }
    if (seconds > lastSecond) {
        return false;
    }
    const kalo::dateTime_t utc(seconds);
    out.date = utc.date;
    out.hour = utc.timeOfDay.hour;
    out.minute = utc.timeOfDay.minute;
    out.second = static_cast<unsigned>(utc.timeOfDay.second);
    out.statesZone = true;
    return complete(out);
}

// 23:59:58.119
bool readClockAlone(cursor_t& at, const reading_t& how, stamp_t& out) {
    return readClock(at, true, out) && readFraction(at, point, how, out);
}

struct stampShape_t {
    std::size_t digits;     // at its start
    std::string_view marks; // one of them must follow; empty: anything may follow
    bool (*read)(cursor_t& at, const reading_t& how, stamp_t& out);
    bool isNumber; // it may be something else as well
};

// The first digits and what follows them tell which shapes it can have; they are tried in order.
constexpr stampShape_t shapes[] = {
    {4, "-", readIso, false},        {4, "/", readSlashes, false},
    {4, ":+", readDayOfYear, false}, {2, "/-.", readEitherOrder, false},
    {2, ":", readClockAlone, true},  {10, ":", readCompact, false},
    {8, "", readCompact, false},     {14, "", readCompact, false},
    {10, "", readUnix, true},        {13, "", readUnix, true},
    {16, "", readUnix, true},        {19, "", readUnix, true}};

// "[054]", a counter within the last digit of a stamp.
bool isCounter(cursor_t at) { return at.one('[') && !at.digits().empty() && at.one(']'); }

bool mayEnd(const cursor_t& at, bool isJson) {
    static constexpr charSet_t behindItem(" \t,;|])\"'<>");
    cursor_t colon = at;
    return at.isAtEnd() || behindItem.holds(at.current()) || isCounter(at) || colon.word(": ") ||
           (isJson && at.current() == '}');
}

bool mayBegin(char before, bool isJson) {
    static constexpr charSet_t beforeItem(" \t,;|[(\"'<>=");
    return beforeItem.holds(before) || (isJson && before == ':');
}

bool readShape(const stampShape_t& shape, std::string_view text, std::size_t at,
               const stampRules_t& rules, stamp_t& out) {
    for (const bool takesComma : {true, false}) {
        cursor_t cursor(text, at);
        out = {};
        if (shape.read(cursor, {rules, takesComma}, out) && mayEnd(cursor, rules.isJson)) {
            out.text = text.substr(at, cursor.at() - at);
            return true;
        }
    }
    return false;
}

} // namespace

bool readStamp(std::string_view text, std::size_t at, const stampRules_t& rules, stamp_t& out) {
    if (at >= text.size() || !isDigit(text[at])) {
        return false;
    }
    cursor_t start(text, at);
    const std::size_t digits = start.digits().size();
    const char mark = start.current();
    return std::any_of(std::begin(shapes), std::end(shapes), [&](const stampShape_t& shape) {
        const bool fits = shape.digits == digits &&
                          (shape.marks.empty() || shape.marks.find(mark) != std::string_view::npos);
        return fits && (rules.takesNumbers || !shape.isNumber) &&
               readShape(shape, text, at, rules, out);
    });
}

bool findStamp(std::string_view text, const stampRules_t& rules, stamp_t& out) {
    for (std::size_t at = 0; at < text.size(); ++at) {
        if ((at == 0 || mayBegin(text[at - 1], rules.isJson)) && readStamp(text, at, rules, out)) {
            return true;
        }
    }
    return false;
}

bool readUnixStamp(std::string_view text, stamp_t& out) {
    cursor_t cursor(text, 0);
    out = {};
    out.text = text;
    return readUnix(cursor, {{}, false}, out) && cursor.isAtEnd();
}

std::optional<double> isoTime(std::string_view text) {
    cursor_t cursor(text, 0);
    stamp_t stamp;
    if (!readIso(cursor, {{}, false}, stamp) || !cursor.isAtEnd()) {
        return {};
    }
    return stamp.unixTime;
}

std::string isoText(double unixTime) {
    constexpr double perSecond = 1e6;
    const double whole = std::floor(unixTime);
    const auto microseconds = static_cast<unsigned>((unixTime - whole) * perSecond);
    const kalo::dateTime_t utc(whole);
    const std::string fraction = std::to_string(1000000 + microseconds).substr(1);
    stamp_t stamp;
    stamp.hasDate = true;
    stamp.statesZone = true;
    stamp.date = utc.date;
    stamp.hour = utc.timeOfDay.hour;
    stamp.minute = utc.timeOfDay.minute;
    stamp.second = static_cast<unsigned>(utc.timeOfDay.second);
    stamp.fraction = fraction;
    std::string text;
    appendReceived(text, stamp);
    return text;
}

void appendReceived(std::string& out, const stamp_t& stamp) {
    if (!stamp.hasDate) {
        out.append(stamp.text);
        return;
    }
    char text[] = "yyyy-mm-ddThh:mm:ss"; // no year of a stamp has more digits
    const auto write = [&](std::size_t end, std::size_t digits, unsigned value) {
        for (std::size_t i = 1; i <= digits; ++i, value /= 10) {
            text[end - i] = static_cast<char>('0' + value % 10);
        }
    };
    write(4, 4, stamp.date.year);
    write(7, 2, stamp.date.month);
    write(10, 2, stamp.date.day);
    write(13, 2, stamp.hour);
    write(16, 2, stamp.minute);
    write(19, 2, stamp.second);
    out.append(text);
    if (!stamp.fraction.empty()) {
        out.append(1, '.').append(stamp.fraction);
    }
    out.append(stamp.statesZone ? "Z" : "");
}

stamp_t inOrder(const stamp_t& stamp, dateOrder_t order) {
    stamp_t result = stamp;
    const std::optional<kalo::date_t>& date =
        order == dateOrder_t::dayFirst ? stamp.asDayFirst : stamp.asMonthFirst;
    if (date && order != dateOrder_t::unknown) {
        result.date = *date;
        complete(result);
    }
    return result;
}
