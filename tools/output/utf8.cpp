#include "tools/output/utf8.h"

namespace {

bool isContinuation(unsigned char c) { return (c & 0xC0) == 0x80; }

} // namespace

std::size_t utf8Length(std::string_view text) {
    const auto at = [&](std::size_t i) {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
    };
    const unsigned first = at(0);
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(static_cast<unsigned char>(at(i)))) {
            return 0;
        }
    }
    // Overlong forms, surrogates, and what lies beyond the last code point.
    const unsigned second = at(1);
    if ((first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
        (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F)) {
        return 0;
    }
    return length;
}
