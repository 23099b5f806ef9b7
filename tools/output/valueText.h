// Values as text, the same in every format: numbers, angles, dates, times.
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

#include "kalo/time/dateTime.h"
#include "tools/output/buffer.h"
#include "tools/output/numberText.h"
#include "tools/record/degrees.h"
#include "tools/time/dating.h"

/// How records are printed, whatever the format.
struct valueOptions_t {
    bool radians = false; ///< angles as the library gives them
    bool raw = false;     ///< the bytes of every record
    bool epoch = false;   ///< instants as Unix seconds
    bool explain = false; ///< how each instant got its day
};

// Each function below that takes `at` writes there and returns the end. A number, a date or a time
// without its fraction needs no more room than this.
constexpr std::size_t longestPlain = 64;

/// Copies a literal.
template <std::size_t size>
char* writeLiteral(char* at, const char (&text)[size]) {
    std::memcpy(at, text, size - 1);
    return at + size - 1;
}

/// Whether a value of this type is written by `writePlain`, without quotes in every format.
template <typename T>
constexpr bool isPlainType = std::is_arithmetic_v<T> && !std::is_same_v<T, char>;

inline char* writePlain(char* at, bool value) {
    return value ? writeLiteral(at, "true") : writeLiteral(at, "false");
}
inline char* writePlain(char* at, std::uint64_t value) { return writeInteger(at, value); }
inline char* writePlain(char* at, unsigned value) { return writeInteger(at, std::uint64_t{value}); }
inline char* writePlain(char* at, unsigned short value) {
    return writeInteger(at, std::uint64_t{value});
}
inline char* writePlain(char* at, int value) { return writeInteger(at, value); }
inline char* writePlain(char* at, std::int64_t value) {
    *at = '-';
    return writeInteger(at + (value < 0 ? 1 : 0),
                        value < 0 ? std::uint64_t{0} - static_cast<std::uint64_t>(value)
                                  : static_cast<std::uint64_t>(value));
}
inline char* writePlain(char* at, float value) { return writeShortest(at, value); }
inline char* writePlain(char* at, double value) { return writeShortest(at, value); }

/// "2026-03-14".
inline char* writePlain(char* at, const kalo::date_t& date) {
    at = writeYear(at, date.year);
    *at++ = '-';
    at = writePair(at, date.month);
    *at++ = '-';
    return writePair(at, date.day);
}

inline char* writeAngle(char* at, double radians, bool asRadians) {
    return asRadians ? writeShortest(at, radians)
                     : writeFifteenDigits(at, radians * degreesPerRadian);
}

/// "23:59:58.50", with the digits that were sent.
inline void writeTime(buffer_t& out, const sentTime_t& sent) {
    char* at = out.room(longestPlain + 1 + sent.fraction.size());
    at = writePair(at, sent.time.hour);
    *at++ = ':';
    at = writePair(at, sent.time.minute);
    *at++ = ':';
    at = writePair(at, sent.second);
    if (!sent.fraction.empty()) {
        *at++ = '.';
        std::memcpy(at, sent.fraction.data(), sent.fraction.size());
        at += sent.fraction.size();
    }
    out.setEnd(at);
}

/// "2026-03-14T23:59:58.50" between two texts.
inline void writeInstant(buffer_t& out, const instant_t& instant, std::string_view before,
                         std::string_view behind) {
    char* const at = out.room(before.size() + longestPlain);
    std::memcpy(at, before.data(), before.size());
    char* const end = writePlain(at + before.size(), instant.date);
    *end = 'T';
    out.setEnd(end + 1);
    writeTime(out, instant.time);
    out.append(behind);
}

/// Two upper-case hexadecimal digits.
inline void writeHexByte(buffer_t& out, unsigned byte) {
    constexpr const char* digits = "0123456789ABCDEF";
    out.append(digits[byte >> 4]);
    out.append(digits[byte & 0xF]);
}

/// The word for how an instant got its day.
const char* dayRuleText(dayRule_t rule);
