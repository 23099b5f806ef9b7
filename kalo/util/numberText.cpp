#include "kalo/util/numberText.h"

#include <cfloat>
#include <charconv>
#include <cstdint>
#include <limits>
#include <locale>
#include <sstream>
#include <type_traits>

// There are two ways to a number. The stream's formatted extraction defines the result. The fast
// way takes what well-formed records consist of and leaves everything else to the stream: white
// space and "+" in front, prefixes, overflow, and whatever is no number.
//
// A stream reads by the global locale. Plain digits mean the same in every one; any other text
// takes the fast way only while the global locale is the classic one.

namespace kalo {

namespace {

template <typename T>
bool extract(const char* data, std::size_t length, T& out, std::ios_base::fmtflags base) {
    std::istringstream stream(std::string(data, length));
    stream.setf(base, std::ios_base::basefield);
    if constexpr (std::is_unsigned_v<T>) {
        // A stream would wrap the negated value: a satellite count of 4294967291 helps nobody.
        stream >> std::ws;
        if (stream.peek() == '-') {
            return false;
        }
    }
    stream >> out;
    return !stream.fail() && stream.eof();
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// A few decimal digits, which every type holds: what most integers are.
template <typename T>
bool parseDigits(const char* data, std::size_t length, T& out) {
    if (length > std::numeric_limits<short>::digits10) {
        return false;
    }
    unsigned value = 0;
    for (std::size_t i = 0; i < length; ++i) {
        if (!isDigit(data[i])) {
            return false;
        }
        value = value * 10 + static_cast<unsigned>(data[i] - '0');
    }
    out = static_cast<T>(value);
    return true;
}

// Only digits of the base, and a "-" where the type has a sign.
template <typename T>
bool parseInteger(const char* data, std::size_t length, T& out, int base) {
    T value = 0;
    const std::from_chars_result result = std::from_chars(data, data + length, value, base);
    if (result.ec != std::errc() || result.ptr != data + length) {
        return false;
    }
    out = value;
    return true;
}

template <typename T>
bool decodeInteger(const char* data, std::size_t length, T& out, int base) {
    if (base != 10 && base != 16 && base != 8) {
        return false;
    }
    if (length == 0) {
        return false;
    }
    if ((base == 10 && parseDigits(data, length, out)) || parseInteger(data, length, out, base)) {
        return true;
    }
    return extract(data, length, out,
                   base == 10   ? std::ios_base::dec
                   : base == 16 ? std::ios_base::hex
                                : std::ios_base::oct);
}

// A sign, digits and at most one point, read as an integer mantissa and a power of ten.
struct decimal_t {
    bool negative = false;
    std::uint64_t mantissa = 0;
    unsigned digits = 0;
    unsigned decimals = 0;
    bool hasPoint = false;
};

bool parseDecimal(const char* data, std::size_t length, decimal_t& out) {
    const char* const end = data + length;
    out.negative = *data == '-';
    data += out.negative ? 1 : 0;
    const char* point = end;
    for (const char* at = data; at != end; ++at) {
        if (isDigit(*at)) {
            out.mantissa = out.mantissa * 10 + static_cast<std::uint64_t>(*at - '0');
        } else if (*at == '.' && point == end) {
            point = at;
        } else {
            return false;
        }
    }
    out.hasPoint = point != end;
    out.digits = static_cast<unsigned>(end - data) - (out.hasPoint ? 1 : 0);
    out.decimals = out.hasPoint ? static_cast<unsigned>(end - point) - 1 : 0;
    return out.digits > 0;
}

// So many digits fit the mantissa's type, and as many powers of ten are exact as doubles.
constexpr unsigned maxDigits = 19;
constexpr double powersOfTen[maxDigits + 1] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,
                                               1e7,  1e8,  1e9,  1e10, 1e11, 1e12, 1e13,
                                               1e14, 1e15, 1e16, 1e17, 1e18, 1e19};

// With both sides exact one division rounds correctly, unless the processor's registers are wider
// than a double.
bool isExact(const decimal_t& decimal) {
    return FLT_EVAL_METHOD == 0 && decimal.digits <= maxDigits &&
           decimal.mantissa <= std::uint64_t{1} << DBL_MANT_DIG;
}

// `from_chars` would take "inf" and "nan", which end in a letter or a parenthesis.
template <typename T>
bool parseReal(const char* data, std::size_t length, T& out) {
#if defined(__cpp_lib_to_chars)
    const char last = data[length - 1];
    T value = 0;
    if (!isDigit(last) && last != '.') {
        return false;
    }
    const std::from_chars_result result = std::from_chars(data, data + length, value);
    if (result.ec != std::errc() || result.ptr != data + length) {
        return false;
    }
    out = value;
    return true;
#else
    static_cast<void>(data);
    static_cast<void>(length);
    static_cast<void>(out);
    return false;
#endif
}

} // namespace

bool decodeText(const char* data, std::size_t length, unsigned short& out, int base) {
    return decodeInteger(data, length, out, base);
}

bool decodeText(const char* data, std::size_t length, short& out, int base) {
    return decodeInteger(data, length, out, base);
}

bool decodeText(const char* data, std::size_t length, int& out, int base) {
    return decodeInteger(data, length, out, base);
}

bool decodeText(const char* data, std::size_t length, unsigned& out, int base) {
    return decodeInteger(data, length, out, base);
}

bool decodeText(const char* data, std::size_t length, long long& out, int base) {
    return decodeInteger(data, length, out, base);
}

bool decodeText(const char* data, std::size_t length, unsigned long long& out, int base) {
    return decodeInteger(data, length, out, base);
}

bool decodeText(const char* data, std::size_t length, float& out) {
    if (length == 0) {
        return false;
    }
    if (isClassicLocale() && parseReal(data, length, out)) {
        return true;
    }
    return extract(data, length, out, std::ios_base::dec);
}

bool decodeText(const char* data, std::size_t length, double& out) {
    if (length == 0) {
        return false;
    }
    // Records in columns have blanks in front of their numbers.
    std::size_t blanks = 0;
    while (blanks + 1 < length && data[blanks] == ' ') {
        ++blanks;
    }
    decimal_t decimal;
    const bool exact = parseDecimal(data + blanks, length - blanks, decimal) && isExact(decimal);
    const bool isPlain = blanks == 0 && !decimal.hasPoint;
    if (exact && (isPlain || isClassicLocale())) {
        const double value = static_cast<double>(decimal.mantissa) / powersOfTen[decimal.decimals];
        out = decimal.negative ? -value : value;
        return true;
    }
    if (isClassicLocale() && parseReal(data, length, out)) {
        return true;
    }
    return extract(data, length, out, std::ios_base::dec);
}

bool isClassicLocale() { return std::locale() == std::locale::classic(); }

} // namespace kalo
