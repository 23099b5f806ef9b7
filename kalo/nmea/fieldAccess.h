// Fetch and decode in one step, for the sources of the views; not installed.
#pragma once

#include <string>

#include "kalo/nmea/fieldText.h"
#include "kalo/nmea/nmeaFormatState.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// What the views' sources see of the sentence without a call.
struct fieldAccess_t {
    static unsigned count(const nmeaMsg_t& msg) {
        return static_cast<unsigned>(msg.m_format->m_state->fieldCount);
    }
    /// Null beyond the last field.
    static const std::string* text(const nmeaMsg_t& msg, unsigned index) {
        const nmeaFormat_t::state_t& state = *msg.m_format->m_state;
        return index < state.fieldCount ? &state.fields[index].m_text : nullptr;
    }
};

/// Calls `decoder` on the text of field `index`; false if there is no such field.
template <typename T>
bool decodeField(const nmeaMsg_t& msg, unsigned index, bool (*decoder)(const std::string&, T&),
                 T& out) {
    const std::string* const text = fieldAccess_t::text(msg, index);
    return text != nullptr && decoder(*text, out);
}

inline bool decodeReal(const nmeaMsg_t& msg, unsigned index, double& out) {
    return decodeField(msg, index, decodeRealText, out);
}

inline bool decodeDecimal(const nmeaMsg_t& msg, unsigned index, unsigned& out) {
    return decodeField(msg, index, decodeDecimalText, out);
}

inline bool decodeRadians(const nmeaMsg_t& msg, unsigned index, double& out) {
    return decodeField(msg, index, decodeRadiansText, out);
}

inline bool decodeTime(const nmeaMsg_t& msg, unsigned index, timeOfDay_t& out) {
    return decodeField(msg, index, decodeHHMMSSText, out);
}

inline bool decodeLetter(const nmeaMsg_t& msg, unsigned index, char& out) {
    return decodeField(msg, index, decodeLetterText, out);
}

inline bool decodeString(const nmeaMsg_t& msg, unsigned index, std::string& out) {
    const std::string* const text = fieldAccess_t::text(msg, index);
    if (text == nullptr) {
        return false;
    }
    out = *text;
    return true;
}

/// A number that counts only if the next field is the letter `unit`. `out` receives the number
/// before the letter is checked.
inline bool decodeWithUnit(const nmeaMsg_t& msg, unsigned index, char unit, double& out) {
    char letter = 0;
    return index + 1 < fieldAccess_t::count(msg) && decodeReal(msg, index, out) &&
           decodeLetter(msg, index + 1, letter) && letter == unit;
}

/// The product of a magnitude and the sign that the next field gives. False leaves `out` untouched.
inline bool decodeSigned(const nmeaMsg_t& msg, unsigned index,
                         bool (*magnitudeDecoder)(const std::string&, double&),
                         bool (*signDecoder)(const std::string&, double&), double& out) {
    double magnitude = 0;
    double sign = 0;
    if (!decodeField(msg, index, magnitudeDecoder, magnitude) ||
        !decodeField(msg, index + 1, signDecoder, sign)) {
        return false;
    }
    out = magnitude * sign;
    return true;
}

inline bool decodeLatitude(const nmeaMsg_t& msg, unsigned index, double& out) {
    return decodeSigned(msg, index, decodeLatitudeText, decodeNSText, out);
}

inline bool decodeLongitude(const nmeaMsg_t& msg, unsigned index, double& out) {
    return decodeSigned(msg, index, decodeLongitudeText, decodeEWText, out);
}

} // namespace kalo
