// What the library's tests share: framed sentences, and tables of texts.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "kalo/nmea/nmeaFormat.h"
#include "tests/text.h"

constexpr double pi = 3.141592653589793;
constexpr double rad(double degrees) { return degrees * pi / 180; }

/// Framed where nothing can be read behind it.
inline kalo::nmeaFormat_t framed(const std::string& body) {
    const std::string_view text = guarded(sentence(body));
    return {text.data(), text.size()};
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
