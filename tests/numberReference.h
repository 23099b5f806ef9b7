// What defines the numbers in a text, to compare `kalo::decode` with.
#pragma once

#include <cstring>
#include <ios>
#include <sstream>
#include <string>
#include <type_traits>

#include "kalo/util/stringUtil.h"

// The definition, written once more: the stream decides, but for a "-" before an unsigned type.
template <typename T>
bool reference(const std::string& text, T& out, std::ios_base::fmtflags base) {
    std::istringstream stream(text);
    stream.setf(base, std::ios_base::basefield);
    if (std::is_unsigned_v<T>) {
        const std::size_t first = text.find_first_not_of(" \t\n\v\f\r");
        if (first != std::string::npos && text[first] == '-') {
            return false;
        }
    }
    stream >> out;
    return !stream.fail() && stream.eof();
}

// Before, `out` holds what no text gives, and it is compared bit by bit.
template <typename T, typename... Base>
bool agreesAs(const std::string& text, std::ios_base::fmtflags flags, Base... base) {
    T expected = 77, got = 77;
    const bool good = kalo::decode(text, got, base...);
    return good == reference(text, expected, flags) &&
           std::memcmp(&expected, &got, sizeof got) == 0;
}

template <typename... Integers>
bool agreesAsAll(const std::string& text) {
    return agreesAs<float>(text, std::ios::dec) && agreesAs<double>(text, std::ios::dec) &&
           (agreesAs<Integers>(text, std::ios::dec, 10) && ...) &&
           (agreesAs<Integers>(text, std::ios::hex, 16) && ...) &&
           (agreesAs<Integers>(text, std::ios::oct, 8) && ...);
}

constexpr auto agrees =
    agreesAsAll<short, unsigned short, int, unsigned, long long, unsigned long long>;
