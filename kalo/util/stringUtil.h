// Numbers from text: the functions behind every numeric decoder of the library.
// kalo/nmea/nmeaField.h offers them on the fields of a sentence.
#pragma once

#include <string>

#include "kalo/export.h"

namespace kalo {

/// A copy of `text` with every byte passed through the C library's `toupper`.
KALO_EXPORT std::string toUpper(const std::string& text);

/// Reads the whole of `text` as an integer in base 10, 16 or 8; any other base is refused with
/// `out` untouched.
///
/// Leading white space, a "+" and (in base 16) "0x" are accepted; anything after the number,
/// white space included, is not, and neither is a value that the type cannot hold. The unsigned
/// types refuse a "-" and leave `out` untouched. In all other cases `out` is unspecified after
/// false, except that empty or blank text leaves it untouched.
///
/// Numbers are read by the rules of a stream with the global locale, which the library never
/// changes.
KALO_EXPORT bool decode(const std::string& text, unsigned short& out, int base);
KALO_EXPORT bool decode(const std::string& text, short& out, int base);
KALO_EXPORT bool decode(const std::string& text, int& out, int base);
KALO_EXPORT bool decode(const std::string& text, unsigned& out, int base);
KALO_EXPORT bool decode(const std::string& text, long long& out, int base);
KALO_EXPORT bool decode(const std::string& text, unsigned long long& out, int base);

/// Reads the whole of `text` as a decimal number: sign, digits with at most one ".", exponent.
/// "inf", "nan" and hexadecimal notation are not numbers here. White space and `out` as above.
KALO_EXPORT bool decode(const std::string& text, float& out);
KALO_EXPORT bool decode(const std::string& text, double& out);

} // namespace kalo
