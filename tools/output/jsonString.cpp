#include "tools/output/jsonString.h"

namespace {

bool isContinuation(unsigned char c) { return (c & 0xC0) == 0x80; }

// The length of the UTF-8 sequence of several bytes at the start of `text`; 0 when it is not valid.
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

bool isPlain(unsigned char c) { return c >= 0x20 && c < 0x80 && c != '"' && c != '\\'; }

void writeHex(buffer_t& out, std::string_view start, unsigned char c, const char* digits) {
    out.append(start);
    out.append(digits[c >> 4]);
    out.append(digits[c & 0xF]);
}

void writeControl(buffer_t& out, unsigned char c) {
    switch (c) {
    case '\t': out.append("\\t"); return;
    case '\n': out.append("\\n"); return;
    case '\r': out.append("\\r"); return;
    default: writeHex(out, "\\u00", c, "0123456789abcdef");
    }
}

} // namespace

void writeJsonString(buffer_t& out, std::string_view bytes) {
    char* const begin = out.room(bytes.size() + 2);
    char* at = begin;
    *at++ = '"';
    std::size_t plain = 0;
    while (plain < bytes.size() && isPlain(static_cast<unsigned char>(bytes[plain]))) {
        *at++ = bytes[plain++];
    }
    if (plain == bytes.size()) { // nothing to escape, as a rule
        *at++ = '"';
        out.setEnd(at);
        return;
    }
    out.append('"');
    std::size_t done = 0;
    for (std::size_t i = 0; i < bytes.size();) {
        const auto c = static_cast<unsigned char>(bytes[i]);
        const std::size_t length = isPlain(c) ? 1 : utf8Length(bytes.substr(i));
        if (length > 0) {
            i += length;
            continue;
        }
        out.append(bytes.substr(done, i - done));
        done = ++i;
        if (c == '"') {
            out.append("\\\"");
        } else if (c == '\\') {
            out.append("\\\\\\\\");
        } else if (c < 0x20) {
            writeControl(out, c);
        } else {
            writeHex(out, "\\\\x", c, "0123456789ABCDEF");
        }
    }
    out.append(bytes.substr(done));
    out.append('"');
}
