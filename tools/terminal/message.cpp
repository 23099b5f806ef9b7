#include "tools/terminal/message.h"

#include <cerrno>

#include <unistd.h>

#include "tools/terminal/colour.h"

void say(std::string_view text) noexcept {
    std::string line;
    try {
        line.append(text).append("\n");
    } catch (...) {
        return;
    }
    for (std::string_view left = line; !left.empty();) {
        const ssize_t count = write(STDERR_FILENO, left.data(), left.size());
        if (count > 0) {
            left.remove_prefix(static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return;
        }
    }
}

void sayFault(const std::string& text) {
    say(styled(style_t::fault, "kalo:", STDERR_FILENO) + ' ' + text);
}

void complain(std::string_view name, std::string_view reason) {
    sayFault(printable(name) + ": " + printable(reason));
}

std::string printable(std::string_view text) {
    constexpr const char* digits = "0123456789ABCDEF";
    std::string result;
    for (const char c : text.substr(0, printableLength)) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte < 0x7F) {
            result += c;
        } else {
            result.append("\\x").append(1, digits[byte >> 4]).append(1, digits[byte & 0xF]);
        }
    }
    return text.size() > printableLength ? result + "..." : result;
}
