// What the library's tests share: sentences with checksum and line end, and tables of texts.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "kalo/nmea/nmeaFormat.h"

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

/// A copy that ends where readable memory ends, until the next call.
inline std::string_view guarded(const std::string& text) {
    static const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    static char* const end = [] {
        void* memory =
            mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANON, -1, 0);
        char* const behind = static_cast<char*>(memory) + page;
        return mprotect(behind, page, PROT_NONE) == 0 ? behind : nullptr;
    }();
    std::memcpy(end - text.size(), text.data(), text.size());
    return {end - text.size(), text.size()};
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
