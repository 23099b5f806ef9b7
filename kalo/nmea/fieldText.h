// The decoders of a field as functions of its text, for `nmeaField_t` and for the sources of the
// views; not installed. Each is short, so that the compiler puts it where a view needs it.
#pragma once

#include <cstddef>
#include <string>

#include "kalo/time/dateTime.h"
#include "kalo/time/timeUtil.h"
#include "kalo/util/numberText.h"
#include "kalo/util/units.h"

namespace kalo {

inline bool decodeRealText(const std::string& text, double& out) {
    return decodeText(text.data(), text.size(), out);
}

inline bool decodeDecimalText(const std::string& text, unsigned& out) {
    return decodeText(text.data(), text.size(), out);
}

inline bool decodeShortText(const std::string& text, unsigned short& out) {
    return decodeText(text.data(), text.size(), out, 10);
}

inline bool decodeIntegerText(const std::string& text, int& out) {
    return decodeText(text.data(), text.size(), out, 10);
}

inline bool decodeLetterText(const std::string& text, char& out) {
    if (text.size() != 1) {
        return false;
    }
    out = text[0];
    return true;
}

/// Decimal degrees. False leaves `out` untouched.
inline bool decodeRadiansText(const std::string& text, double& out) {
    double degrees = 0;
    if (!decodeRealText(text, degrees)) {
        return false;
    }
    out = radiansFromDegrees(degrees);
    return true;
}

/// Degrees of so many digits followed by minutes. False leaves `out` untouched.
template <std::size_t degreeDigits>
bool decodeCoordinateText(const std::string& text, double& out) {
    if (text.size() <= degreeDigits) {
        return false;
    }
    unsigned degrees = 0;
    double minutes = 0;
    if (!decodeText(text.data(), degreeDigits, degrees) ||
        !decodeText(text.data() + degreeDigits, text.size() - degreeDigits, minutes) ||
        minutes < 0) {
        return false;
    }
    out = radiansFromDegrees(degrees + minutes / 60);
    return true;
}

inline bool decodeLatitudeText(const std::string& text, double& out) {
    return decodeCoordinateText<2>(text, out);
}

inline bool decodeLongitudeText(const std::string& text, double& out) {
    return decodeCoordinateText<3>(text, out);
}

/// +1.0 for one letter, -1.0 for another. False leaves `out` untouched.
template <char positive, char negative>
bool decodeSignText(const std::string& text, double& out) {
    if (text.size() != 1 || (text[0] != positive && text[0] != negative)) {
        return false;
    }
    out = text[0] == positive ? 1.0 : -1.0;
    return true;
}

inline bool decodeNSText(const std::string& text, double& out) {
    return decodeSignText<'N', 'S'>(text, out);
}

inline bool decodeEWText(const std::string& text, double& out) {
    return decodeSignText<'E', 'W'>(text, out);
}

inline bool decodeHHMMSSText(const std::string& text, timeOfDay_t& out) {
    return text.size() >= 5 && decodeText(text.data(), 2, out.hour) &&
           decodeText(text.data() + 2, 2, out.minute) &&
           decodeText(text.data() + 4, text.size() - 4, out.second);
}

inline bool decodeDDMMYYText(const std::string& text, date_t& out, unsigned cutoff) {
    if (text.size() != 6 || !decodeText(text.data(), 2, out.day) ||
        !decodeText(text.data() + 2, 2, out.month) || !decodeText(text.data() + 4, 2, out.year)) {
        return false;
    }
    out.year = twoDigitYearToAD(out.year, cutoff);
    return true;
}

template <unsigned cutoff>
bool decodeDDMMYYText(const std::string& text, date_t& out) {
    return decodeDDMMYYText(text, out, cutoff);
}

} // namespace kalo
