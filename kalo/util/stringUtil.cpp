#include "kalo/util/stringUtil.h"

#include <cctype>

#include "kalo/util/numberText.h"

namespace kalo {

std::string toUpper(const std::string& text) {
    std::string result = text;
    for (char& c : result) {
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    return result;
}

bool decode(const std::string& text, unsigned short& out, int base) {
    return decodeText(text.data(), text.size(), out, base);
}

bool decode(const std::string& text, short& out, int base) {
    return decodeText(text.data(), text.size(), out, base);
}

bool decode(const std::string& text, int& out, int base) {
    return decodeText(text.data(), text.size(), out, base);
}

bool decode(const std::string& text, unsigned& out, int base) {
    return decodeText(text.data(), text.size(), out, base);
}

bool decode(const std::string& text, long long& out, int base) {
    return decodeText(text.data(), text.size(), out, base);
}

bool decode(const std::string& text, unsigned long long& out, int base) {
    return decodeText(text.data(), text.size(), out, base);
}

bool decode(const std::string& text, float& out) {
    return decodeText(text.data(), text.size(), out);
}

bool decode(const std::string& text, double& out) {
    return decodeText(text.data(), text.size(), out);
}

} // namespace kalo
