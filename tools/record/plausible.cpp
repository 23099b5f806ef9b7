#include "tools/record/plausible.h"

#include <algorithm>
#include <cmath>

#include "kalo/util/stringUtil.h"

namespace {

// As the library computes radians, so that the bounds themselves are within them.
constexpr double radiansOf(double degrees) { return degrees * 3.141592653589793 / 180; }

bool areDigits(const std::string& text, std::size_t from, std::size_t to) {
    return std::all_of(text.begin() + static_cast<std::ptrdiff_t>(from),
                       text.begin() + static_cast<std::ptrdiff_t>(to),
                       [](char c) { return c >= '0' && c <= '9'; });
}

// Degrees of so many digits, then minutes with two digits in front of the point.
bool isCoordinate(const std::string& text, std::size_t degreeDigits, unsigned mostDegrees) {
    const std::size_t whole = std::min(text.find('.'), text.size());
    if (whole != degreeDigits + 2 || !areDigits(text, 0, whole)) {
        return false;
    }
    unsigned degrees = 0;
    for (std::size_t i = 0; i < degreeDigits; ++i) {
        degrees = degrees * 10 + static_cast<unsigned>(text[i] - '0');
    }
    double minutes = 0; // 07.1e1 is a number too
    return kalo::decode(text.substr(degreeDigits), minutes) && minutes < 60 &&
           (degrees < mostDegrees || (degrees == mostDegrees && minutes == 0));
}

} // namespace

bool isTimeOfDay(const std::string& text) {
    constexpr std::size_t whole = 6;
    return text.size() >= whole && areDigits(text, 0, whole) &&
           (text.size() == whole ||
            (text[whole] == '.' && areDigits(text, whole + 1, text.size())));
}

bool isLatitude(const std::string& text) { return isCoordinate(text, 2, 90); }

bool isLongitude(const std::string& text) { return isCoordinate(text, 3, 180); }

bool isInLatitudes(double radians) { return std::fabs(radians) <= radiansOf(90); }

bool isInLongitudes(double radians) { return std::fabs(radians) <= radiansOf(180); }

bool isFinite(double value) { return std::isfinite(value); }
