#include "tools/record/plausible.h"

#include <cmath>

#include "kalo/util/stringUtil.h"
#include "tools/input/text.h"
#include "tools/record/degrees.h"

namespace {

// How many digits stand from `from` on.
std::size_t digitsFrom(const std::string& text, std::size_t from) {
    std::size_t end = from;
    while (end < text.size() && isDigit(text[end])) {
        ++end;
    }
    return end - from;
}

// Whether minutes from `at` on are below 60.
bool areMinutes(const std::string& text, std::size_t at) {
    constexpr std::size_t wholeDigits = 2;
    const std::size_t point = at + wholeDigits;
    if (point == text.size() || point + 1 + digitsFrom(text, point + 1) == text.size()) {
        return text[at] < '6';
    }
    double minutes = 0; // 07.1e1 is a number too
    return kalo::decode(text.substr(at), minutes) && minutes < 60;
}

// Degrees of so many digits, then minutes with two digits in front of the point.
bool isCoordinate(const std::string& text, std::size_t degreeDigits, unsigned mostDegrees) {
    const std::size_t whole = digitsFrom(text, 0);
    if (whole != degreeDigits + 2 || (whole < text.size() && text[whole] != '.')) {
        return false;
    }
    unsigned degrees = 0;
    for (std::size_t i = 0; i < degreeDigits; ++i) {
        degrees = degrees * 10 + static_cast<unsigned>(text[i] - '0');
    }
    const bool isAtMost =
        degrees < mostDegrees ||
        (degrees == mostDegrees && text.find_first_not_of("0.", degreeDigits) == std::string::npos);
    return isAtMost && areMinutes(text, degreeDigits);
}

} // namespace

bool isTimeOfDay(const std::string& text) {
    constexpr std::size_t wholeDigits = 6;
    const std::size_t whole = digitsFrom(text, 0);
    return whole == wholeDigits &&
           (whole == text.size() ||
            (text[whole] == '.' && whole + 1 + digitsFrom(text, whole + 1) == text.size()));
}

bool isLatitude(const std::string& text) { return isCoordinate(text, 2, 90); }

bool isLongitude(const std::string& text) { return isCoordinate(text, 3, 180); }

bool isInLatitudes(double radians) { return std::fabs(radians) <= radiansOf(90); }

bool isInLongitudes(double radians) { return std::fabs(radians) <= radiansOf(180); }
