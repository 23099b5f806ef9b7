// What the library's tests share: sentences with checksum and line end, and tables of texts.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "kalo/nmea/nmeaFormat.h"
#include "kalo/time/dateTime.h"

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

// Dates and times of day as one number, and what `decode(out)` gives as such a number.
constexpr unsigned ymd(unsigned year, unsigned month, unsigned day) {
    return year * 10000 + month * 100 + day;
}
constexpr double hms(unsigned hour, unsigned minute, double second) {
    return hour * 3600.0 + minute * 60.0 + second;
}
template <typename Decode>
std::optional<unsigned> dateOf(const Decode& decode) {
    kalo::date_t out;
    return decode(out) ? std::optional(ymd(out.year, out.month, out.day)) : std::nullopt;
}
template <typename Decode>
std::optional<double> timeOf(const Decode& decode) {
    kalo::timeOfDay_t out;
    return decode(out) ? std::optional(hms(out.hour, out.minute, out.second)) : std::nullopt;
}

using strings_t = std::vector<std::string>;

/// Stands for the value where a text gives none.
constexpr std::nullopt_t refused = std::nullopt;

/// A value, and the texts that give it.
template <typename T>
struct texts_t {
    std::optional<T> value;
    strings_t texts;
};

/// Compares with what `read(text)` gives for each text: a value, or perhaps none.
template <typename T, typename Read>
void checkTexts(const Read& read, const std::vector<texts_t<T>>& rows) {
    for (const texts_t<T>& row : rows) {
        for (const std::string& text : row.texts) {
            EXPECT_EQ(std::optional<T>(read(text)), row.value) << '"' << text << '"';
        }
    }
}

/// What `decode(out)` gives; it leaves `out` untouched when it gives nothing.
template <typename T, typename Decode>
std::optional<T> valueOf(const Decode& decode, T before = {}) {
    T out = before;
    if (decode(out)) {
        return out;
    }
    EXPECT_EQ(out, before);
    return std::nullopt;
}
