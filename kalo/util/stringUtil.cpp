#include "kalo/util/stringUtil.h"

#include <cctype>
#include <sstream>
#include <type_traits>

namespace kalo {

namespace {

template <typename T>
bool extract(const std::string& text, T& out, std::ios_base::fmtflags base) {
    std::istringstream stream(text);
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

template <typename T>
bool decodeInteger(const std::string& text, T& out, int base) {
    switch (base) {
    case 10: return extract(text, out, std::ios_base::dec);
    case 16: return extract(text, out, std::ios_base::hex);
    case 8: return extract(text, out, std::ios_base::oct);
    default: return false;
    }
}

} // namespace

std::string toUpper(const std::string& text) {
    std::string result = text;
    for (char& c : result) {
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    return result;
}

bool decode(const std::string& text, unsigned short& out, int base) {
    return decodeInteger(text, out, base);
}

bool decode(const std::string& text, short& out, int base) {
    return decodeInteger(text, out, base);
}

bool decode(const std::string& text, int& out, int base) { return decodeInteger(text, out, base); }

bool decode(const std::string& text, unsigned& out, int base) {
    return decodeInteger(text, out, base);
}

bool decode(const std::string& text, long long& out, int base) {
    return decodeInteger(text, out, base);
}

bool decode(const std::string& text, unsigned long long& out, int base) {
    return decodeInteger(text, out, base);
}

bool decode(const std::string& text, float& out) { return extract(text, out, std::ios_base::dec); }

bool decode(const std::string& text, double& out) { return extract(text, out, std::ios_base::dec); }

} // namespace kalo
