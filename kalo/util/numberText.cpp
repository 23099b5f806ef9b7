#include "kalo/util/numberText.h"

#include <charconv>
#include <cstring>
#include <locale>
#include <sstream>

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

// Digits of the base only, and a "-" where the type has a sign.
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

// Whether a text that is no integer can be read to where it ends to be one, as a stream does: `out`
// is what the digits at its start say, or 0.
template <typename T>
bool readDigits(const char* data, std::size_t length, T& out) {
    constexpr std::size_t mostDigits = std::numeric_limits<T>::digits10;
    std::size_t digits = 0;
    T value = 0;
    while (digits < length && isDecimalDigit(data[digits])) {
        if (digits == mostDigits) {
            return false;
        }
        value = static_cast<T>(value * 10 + static_cast<T>(data[digits] - '0'));
        ++digits;
    }
    // A number may begin with white space or a sign.
    if (digits == 0 && std::strchr(" \t\n\v\f\r+-", data[0]) != nullptr) {
        return false;
    }
    out = value;
    return true;
}

template <typename T>
bool decodeInteger(const char* data, std::size_t length, T& out, int base) {
    if ((base != 10 && base != 16 && base != 8) || length == 0) {
        return false;
    }
    if (parseInteger(data, length, out, base)) {
        return true;
    }
    if (base == 10 && isClassicLocale() && readDigits(data, length, out)) {
        return false;
    }
    return extract(data, length, out,
                   base == 10   ? std::ios_base::dec
                   : base == 16 ? std::ios_base::hex
                                : std::ios_base::oct);
}

// `from_chars` would take "inf" and "nan", which end in a letter or a parenthesis.
template <typename T>
bool parseReal(const char* data, std::size_t length, T& out) {
#if defined(__cpp_lib_to_chars)
    const char last = data[length - 1];
    T value = 0;
    if (!isDecimalDigit(last) && last != '.') {
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

// The same of a real number: the digits at the start, up to a character that ends them. Few digits,
// so that `decodeText` reads them exactly.
bool readDigits(const char* data, std::size_t length, double& out) {
    std::size_t end = data[0] == '-' ? 1 : 0;
    const std::size_t begin = end;
    bool hasPoint = false;
    while (end < length && (isDecimalDigit(data[end]) || (data[end] == '.' && !hasPoint))) {
        hasPoint = hasPoint || data[end] == '.';
        ++end;
    }
    const std::size_t digits = end - begin - (hasPoint ? 1 : 0);
    const bool mayGoOn = end == length || data[end] == 'e' || data[end] == 'E';
    const bool mayBegin = end == 0 && std::strchr(" \t\n\v\f\r+", data[0]) != nullptr;
    if (mayGoOn || mayBegin || digits > mostExactDigits) {
        return false;
    }
    if (digits == 0) {
        out = 0;
        return true;
    }
    return decodeText(data, end, out);
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

bool decodeRest(const char* data, std::size_t length, unsigned& out) {
    return decodeInteger(data, length, out, 10);
}

bool decodeRest(const char* data, std::size_t length, double& out) {
    if (length == 0) {
        return false;
    }
    if (!isClassicLocale()) {
        return extract(data, length, out, std::ios_base::dec);
    }
    // Records in columns have blanks in front of their numbers.
    std::size_t blanks = 0;
    while (blanks + 1 < length && data[blanks] == ' ') {
        ++blanks;
    }
    if (blanks > 0 && isDecimalDigit(data[blanks])) {
        return decodeText(data + blanks, length - blanks, out);
    }
    if (parseReal(data, length, out)) {
        return true;
    }
    if (dividesExactly && readDigits(data, length, out)) {
        return false;
    }
    return extract(data, length, out, std::ios_base::dec);
}

// The classic locale is asked for once, and compared as bytes first, which takes no call: two
// locales with the same representation are the same.
bool isClassicLocale() {
    static const std::locale& classic = std::locale::classic();
    const std::locale global;
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison,cert-exp42-c,cert-flp37-c,cert-oop57-cpp)
    return std::memcmp(&global, &classic, sizeof global) == 0 || global == classic;
}

} // namespace kalo
