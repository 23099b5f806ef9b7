#include "tools/input/surroundings.h"

#include <algorithm>

#include "tools/input/text.h"

namespace {

// A letter, then letters, digits and marks.
bool isWord(std::string_view text, std::string_view marks) {
    return !text.empty() && isLetter(text[0]) && std::all_of(text.begin(), text.end(), [&](char c) {
        return isLetter(c) || isDigit(c) || marks.find(c) != std::string_view::npos;
    });
}

// The length of one printed line end at the start of `text`: one of the two characters, by its
// escape or its name.
std::size_t onePrintedEnd(std::string_view text) {
    constexpr std::string_view printed[] = {
        "\\r",  "\\n",    "\\x0d",  "\\x0a",  "\\x0D",  "\\x0A",  "<CR>",   "<LF>",   "[CR]",
        "[LF]", "<0x0D>", "<0x0A>", "<0x0d>", "<0x0a>", "[0x0D]", "[0x0A]", "[0x0d]", "[0x0a]"};
    static constexpr charSet_t firstCharacters("\\<[");
    if (!firstCharacters.holds(text[0])) {
        return 0;
    }
    for (const std::string_view end : printed) {
        if (startsWith(text, end)) {
            return end.size();
        }
    }
    return 0;
}

} // namespace

std::size_t markLength(std::string_view line) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    constexpr std::string_view datagramHeader("UdPbC\0", 6);
    const std::size_t mark = startsWith(line, byteOrderMark) ? byteOrderMark.size() : 0;
    return mark + (startsWith(line.substr(mark), datagramHeader) ? datagramHeader.size() : 0);
}

std::string_view withoutDecoration(std::string_view text) {
    static constexpr charSet_t decoration(" \t,;|[]()\"'<>=:-");
    while (!text.empty() && decoration.holds(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && decoration.holds(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

lead_t leadOf(std::string_view text, const stampRules_t& rules) {
    static constexpr charSet_t behindName(" \t,");
    lead_t lead;
    std::size_t begin = 0;
    lead.hasStamp = readStamp(text, 0, rules, lead.stamp);
    if (!lead.hasStamp) {
        const std::size_t nameEnd = behindName.findIn(text);
        if (!isWord(text.substr(0, nameEnd), "_.-") ||
            !readStamp(text, nameEnd + 1, rules, lead.stamp)) {
            return lead;
        }
        lead.hasStamp = true;
        lead.name = text.substr(0, nameEnd);
        begin = nameEnd + 1;
    }
    // One character ends the stamp, or a colon and a blank do; blanks follow.
    const std::size_t end = begin + lead.stamp.text.size();
    const std::size_t separator = startsWith(text.substr(end), ": ") ? 2 : 1;
    lead.length = std::min(end + separator, text.size());
    while (lead.length < text.size() && isBlank(text[lead.length])) {
        ++lead.length;
    }
    return lead;
}

std::size_t printedEndLength(std::string_view text) {
    std::size_t length = 0;
    while (length < text.size()) {
        const std::size_t end = isBlank(text[length]) ? 1 : onePrintedEnd(text.substr(length));
        if (end == 0) {
            break;
        }
        length += end;
    }
    return length;
}

char closingOf(char c) {
    switch (c) {
    case '"':
    case '\'': return c;
    case '<': return '>';
    case '>': return '<';
    default: return '\0';
    }
}

bool readTail(std::string_view text, tail_t& out) {
    constexpr std::string_view separators = ",;";
    text = withoutBlanksBehind(text);
    if (text.empty() || separators.find(text[0]) == std::string_view::npos) {
        return false;
    }
    out = {};
    bool isEmpty = true;
    bool hasWords = false; // which may be empty
    while (!text.empty()) {
        text.remove_prefix(1);
        const std::string_view item = text.substr(0, text.find_first_of(separators));
        text.remove_prefix(item.size());
        stamp_t stamp;
        const bool isNumber = readUnixStamp(item, stamp);
        if (!item.empty() && !isNumber && !isWord(item, "-+._")) {
            return false;
        }
        isEmpty = isEmpty && item.empty();
        if (isNumber && !out.hasStamp) {
            out.hasStamp = true;
            out.stamp = stamp;
        } else {
            out.words.append(hasWords ? "," : "").append(item);
            hasWords = true;
        }
    }
    return !isEmpty;
}
