// Fetch and decode in one step, for the sources of the views; not installed.
#pragma once

#include <string>

#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// Calls `decoder` on field `index`; false if there is no such field.
template <typename T, typename... Arguments>
bool decodeField(const nmeaMsg_t& msg, unsigned index,
                 bool (nmeaField_t::*decoder)(T&, Arguments...) const, T& out,
                 Arguments... arguments) {
    const nmeaField_t* field = msg.field(index);
    return field != nullptr && (field->*decoder)(out, arguments...);
}

inline bool decodeReal(const nmeaMsg_t& msg, unsigned index, double& out) {
    return decodeField<double>(msg, index, &nmeaField_t::decode, out);
}

inline bool decodeDecimal(const nmeaMsg_t& msg, unsigned index, unsigned& out) {
    return decodeField<unsigned, int>(msg, index, &nmeaField_t::decode, out, 10);
}

inline bool decodeRadians(const nmeaMsg_t& msg, unsigned index, double& out) {
    return decodeField(msg, index, &nmeaField_t::decodeAsRadians, out);
}

inline bool decodeLetter(const nmeaMsg_t& msg, unsigned index, char& out) {
    return decodeField<char>(msg, index, &nmeaField_t::decode, out);
}

inline bool decodeString(const nmeaMsg_t& msg, unsigned index, std::string& out) {
    return decodeField<std::string>(msg, index, &nmeaField_t::decode, out);
}

/// A number that counts only if the next field is the letter `unit`. `out` receives the number
/// before the letter is checked.
inline bool decodeWithUnit(const nmeaMsg_t& msg, unsigned index, char unit, double& out) {
    char letter = 0;
    return msg.field(index + 1) != nullptr && decodeReal(msg, index, out) &&
           decodeLetter(msg, index + 1, letter) && letter == unit;
}

/// The product of a magnitude and the sign that the next field gives. False leaves `out` untouched.
inline bool decodeSigned(const nmeaMsg_t& msg, unsigned index,
                         bool (nmeaField_t::*magnitudeDecoder)(double&) const,
                         bool (nmeaField_t::*signDecoder)(double&) const, double& out) {
    double magnitude = 0;
    double sign = 0;
    if (!decodeField(msg, index, magnitudeDecoder, magnitude) ||
        !decodeField(msg, index + 1, signDecoder, sign)) {
        return false;
    }
    out = magnitude * sign;
    return true;
}

} // namespace kalo
