#include "tools/output/tableText.h"

#include <algorithm>

#include "tools/output/utf8.h"
#include "tools/output/valueText.h"

namespace {

// Nothing to escape or to quote, in either format.
bool isPlain(char c) { return c >= 0x20 && c < 0x7F && c != '"' && c != ',' && c != '\\'; }

// And no control character, but DEL.
bool isAscii(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x20 && byte < 0x80;
}

bool needsQuotes(char c) { return c == '"' || c == ',' || c == '\n' || c == '\r'; }

// The letter of a line end or a tab behind a backslash; NUL of anything else.
char letterOf(char c) {
    switch (c) {
    case '\t': return 't';
    case '\n': return 'n';
    case '\r': return 'r';
    default: return '\0';
    }
}

void writeCharacter(buffer_t& out, char c, tableFormat_t format, bool isJson) {
    const bool isCsv = format == tableFormat_t::csv;
    const char letter = letterOf(c);
    const bool isDoubled = c == '\\' ? !(isJson && isCsv) : c == '"' && isCsv;
    if (letter != '\0' && !isCsv) {
        out.append('\\');
        out.append(letter);
    } else if (letter != '\0' || isAscii(c)) {
        out.append(c);
        out.append(isDoubled ? std::string_view(&c, 1) : std::string_view());
    } else {
        out.append("\\x");
        writeHexByte(out, static_cast<unsigned char>(c));
    }
}

void writeText(buffer_t& out, std::string_view bytes, tableFormat_t format, bool isJson) {
    if (std::all_of(bytes.begin(), bytes.end(), isPlain)) { // as a rule
        out.append(bytes);
        return;
    }
    const bool isQuoted =
        format == tableFormat_t::csv && std::any_of(bytes.begin(), bytes.end(), needsQuotes);
    const std::string_view quote = isQuoted ? "\"" : "";
    out.append(quote);
    while (!bytes.empty()) {
        const std::size_t length = utf8Length(bytes);
        if (length > 0) {
            out.append(bytes.substr(0, length));
        } else {
            writeCharacter(out, bytes[0], format, isJson);
        }
        bytes.remove_prefix(std::max<std::size_t>(length, 1));
    }
    out.append(quote);
}

} // namespace

void writeCell(buffer_t& out, std::string_view bytes, tableFormat_t format) {
    writeText(out, bytes, format, false);
}

void writeJsonCell(buffer_t& out, std::string_view json, tableFormat_t format) {
    writeText(out, json, format, true);
}
