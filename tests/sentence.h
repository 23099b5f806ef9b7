// What the library's tests share: sentences with checksum and line end, and tables of texts.
#pragma once

#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "kalo/nmea/nmeaFormat.h"
#include "kalo/time/dateTime.h"
#include "kalo/time/timeUtil.h"

constexpr double pi = 3.141592653589793;
constexpr double rad(double degrees) { return degrees * pi / 180; }

/// `body`, such as "$GPGGA,1,2", with its checksum, CR and LF.
inline std::string sentence(const std::string& body) {
    unsigned sum = 0;
    for (std::size_t i = 1; i < body.size(); ++i) {
        sum ^= static_cast<unsigned char>(body[i]);
    }
    constexpr const char* digits = "0123456789ABCDEF";
    return body + '*' + digits[sum / 16] + digits[sum % 16] + "\r\n";
}

inline kalo::nmeaFormat_t framed(const std::string& body) {
    const std::string text = sentence(body);
    return {text.data(), text.size()};
}

/// Whether it was decoded, day, month, and year, of which "c" stands for the century.
inline std::string shown(bool good, const kalo::date_t& date) {
    const int year = static_cast<int>(date.year),
              century = static_cast<int>(kalo::currentCentury());
    return (good ? "good " : "bad ") + std::to_string(date.day) + ' ' + std::to_string(date.month) +
           ' ' + (year < 1000 ? std::to_string(year) : "c" + std::to_string(year - century));
}

inline std::vector<std::string> split(const std::string& text) {
    std::vector<std::string> parts;
    std::istringstream stream(text + '|');
    for (std::string part; std::getline(stream, part, '|');) {
        parts.push_back(part);
    }
    return parts;
}

/// What a text gives that is refused: `out` untouched, or anything in it.
enum refused_t { none, unset };

/// Calls `read(text, out)` for texts with "|" between them, each of which gives the value before
/// it.
template <typename T, typename Read, typename Value, typename... Rest>
void checkTexts(const Read& read, Value value, const char* texts, Rest... rest) {
    T before{};
    if constexpr (std::is_arithmetic_v<T>) {
        before = static_cast<T>(63); // in no table
    }
    for (const std::string& text : split(texts)) {
        T out = before;
        if constexpr (std::is_same_v<Value, refused_t>) {
            EXPECT_FALSE(read(text, out)) << '"' << text << '"';
            EXPECT_TRUE(value == unset || out == before) << '"' << text << "\": " << out;
        } else {
            EXPECT_TRUE(read(text, out)) << '"' << text << '"';
            EXPECT_EQ(out, static_cast<T>(value)) << '"' << text << '"';
        }
    }
    if constexpr (sizeof...(rest) > 0) {
        checkTexts<T>(read, rest...);
    }
}
