// Questions about bytes that the sources in this folder ask. No locale has an effect.
#pragma once

#include <cstddef>
#include <string_view>

inline bool isDigit(char c) { return c >= '0' && c <= '9'; }

inline bool isCapital(char c) { return c >= 'A' && c <= 'Z'; }

inline bool isLetter(char c) { return isCapital(static_cast<char>(c & ~0x20)); }

inline char toCapital(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

inline bool isBlank(char c) { return c == ' ' || c == '\t'; }

/// A set of characters, as a table for quick look-up.
class charSet_t {
public:
    explicit constexpr charSet_t(std::string_view characters) {
        for (const char c : characters) {
            m_holds[static_cast<unsigned char>(c)] = true;
        }
    }

    constexpr bool holds(char c) const { return m_holds[static_cast<unsigned char>(c)]; }

    /// The position of the first of these characters from `from` on; the size of `text` if there is
    /// none.
    constexpr std::size_t findIn(std::string_view text, std::size_t from = 0) const {
        while (from < text.size() && !holds(text[from])) {
            ++from;
        }
        return from < text.size() ? from : text.size();
    }

private:
    bool m_holds[256] = {};
};

inline bool startsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

/// The value of a hexadecimal digit; 16 for any other character.
inline unsigned hexDigit(char c) {
    if (isDigit(c)) {
        return static_cast<unsigned>(c - '0');
    }
    const char upper = static_cast<char>(c & ~0x20);
    return upper >= 'A' && upper <= 'F' ? static_cast<unsigned>(upper - 'A' + 10) : 16;
}

inline unsigned exclusiveOr(std::string_view text) {
    unsigned result = 0;
    for (const char c : text) {
        result ^= static_cast<unsigned char>(c);
    }
    return result;
}

/// `text` without the blanks and tabs at its end.
inline std::string_view withoutBlanksBehind(std::string_view text) {
    return text.substr(0, text.find_last_not_of(" \t") + 1);
}
