#include "tools/output/jsonString.h"

#include "tools/output/utf8.h"

namespace {

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
