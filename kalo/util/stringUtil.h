// Numbers from text: every numeric decoder of the library follows these rules.
// kalo/nmea/nmeaField.h applies them to the fields of a sentence.
#pragma once

#include <string>

#include "kalo/export.h"

namespace kalo {

/// A copy of `text`, every byte of which was converted by the C library's `toupper`.
KALO_EXPORT std::string toUpper(const std::string& text);

/// @name Integers
/// Read the whole of `text` as an integer in base 10, 16 or 8.
///
/// White space before the number, a "+" and, in base 16, "0x" are accepted. False if anything
/// follows the number, even white space, or if the type cannot hold the value. The unsigned types
/// refuse "-".
///
/// After false, `out` is unspecified. It is left untouched by any other base, by empty or blank
/// text, and by "-" before an unsigned number.
///
/// Numbers are read as a stream with the global locale reads them; the library never changes that
/// locale. If memory runs out while a stream reads, the result is false, as for a text that is no
/// number.
/// @{
KALO_EXPORT bool decode(const std::string& text, unsigned short& out, int base);
KALO_EXPORT bool decode(const std::string& text, short& out, int base);
KALO_EXPORT bool decode(const std::string& text, int& out, int base);
KALO_EXPORT bool decode(const std::string& text, unsigned& out, int base);
KALO_EXPORT bool decode(const std::string& text, long long& out, int base);
KALO_EXPORT bool decode(const std::string& text, unsigned long long& out, int base);
/// @}

/// @name Decimal numbers
/// Read the whole of `text` as a sign, digits with at most one ".", and an exponent; sign and
/// exponent may be missing. "inf", "nan" and hexadecimal notation are refused. White space, `out`,
/// the locale and memory that runs out as for integers.
/// @{
KALO_EXPORT bool decode(const std::string& text, float& out);
KALO_EXPORT bool decode(const std::string& text, double& out);
/// @}

} // namespace kalo
