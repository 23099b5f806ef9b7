// Numbers from a range of bytes, by the rules of `kalo::decode`, for texts that are not strings of
// their own. Not installed.
//
// There are two ways to a number. The stream's formatted extraction defines the result. The way
// here takes what records consist of, well formed or not, and leaves everything else to the stream:
// white space and "+" in front, prefixes, exponents, overflow, and many digits.
//
// A stream reads by the global locale. Digits only, with a "-" where the type has a sign, mean the
// same in every locale; any other text is read here only while the global locale is the classic
// one.
#pragma once

#include <cfloat>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace kalo {

/// As `kalo::decode` of the same bytes.
bool decodeText(const char* data, std::size_t length, unsigned short& out, int base);
bool decodeText(const char* data, std::size_t length, short& out, int base);
bool decodeText(const char* data, std::size_t length, int& out, int base);
bool decodeText(const char* data, std::size_t length, unsigned& out, int base);
bool decodeText(const char* data, std::size_t length, long long& out, int base);
bool decodeText(const char* data, std::size_t length, unsigned long long& out, int base);
bool decodeText(const char* data, std::size_t length, float& out);

/// Whether streams read by the rules of the C locale.
bool isClassicLocale();

/// The same for what the functions below do not take.
bool decodeRest(const char* data, std::size_t length, double& out);
bool decodeRest(const char* data, std::size_t length, unsigned& out);

inline bool isDecimalDigit(char c) { return c >= '0' && c <= '9'; }

/// `decodeText` in base 10.
inline bool decodeText(const char* data, std::size_t length, unsigned& out) {
    if (length == 0) {
        return false;
    }
    unsigned value = 0;
    std::size_t digits = 0;
    while (digits < length && digits < std::numeric_limits<unsigned>::digits10 &&
           isDecimalDigit(data[digits])) {
        value = value * 10 + static_cast<unsigned>(data[digits] - '0');
        ++digits;
    }
    if (digits == length) {
        out = value;
        return true;
    }
    return decodeRest(data, length, out);
}

/// A number whose mantissa is exact as a double, and so are these powers of ten: with both sides
/// exact one division rounds correctly, unless the processor's registers are wider than a double.
inline constexpr unsigned mostExactDigits = 15;
inline constexpr double exactPowersOfTen[mostExactDigits + 1] = {
    1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
inline constexpr bool dividesExactly = FLT_EVAL_METHOD == 0;

inline bool decodeText(const char* data, std::size_t length, double& out) {
    const char* const end = data + length;
    const char* at = data;
    const bool isNegative = length > 0 && *at == '-';
    at += isNegative ? 1 : 0;
    const char* const digits = at;
    std::uint64_t mantissa = 0; // of too many digits it wraps, and is not used
    for (; at != end && isDecimalDigit(*at); ++at) {
        mantissa = mantissa * 10 + static_cast<std::uint64_t>(*at - '0');
    }
    std::size_t count = static_cast<std::size_t>(at - digits);
    std::size_t decimals = 0;
    const bool hasPoint = at != end && *at == '.';
    if (hasPoint) {
        const char* const behind = ++at;
        for (; at != end && isDecimalDigit(*at); ++at) {
            mantissa = mantissa * 10 + static_cast<std::uint64_t>(*at - '0');
        }
        decimals = static_cast<std::size_t>(at - behind);
        count += decimals;
    }
    if (dividesExactly && at == end && count - 1 < mostExactDigits &&
        (!hasPoint || isClassicLocale())) {
        const double value =
            static_cast<double>(static_cast<std::int64_t>(mantissa)) / exactPowersOfTen[decimals];
        out = isNegative ? -value : value;
        return true;
    }
    return decodeRest(data, length, out);
}

} // namespace kalo
