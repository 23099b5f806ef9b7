#include "tools/terminal/message.h"

#include <cerrno>

#include <sys/ioctl.h>
#include <unistd.h>

#include "tools/terminal/colour.h"

namespace {

std::size_t shownLength = 0; // of what `show` has left on the terminal

void writeAll(std::string_view text) {
    for (std::string_view left = text; !left.empty();) {
        const ssize_t count = write(STDERR_FILENO, left.data(), left.size());
        if (count > 0) {
            left.remove_prefix(static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return;
        }
    }
}

// Takes off the terminal what was shown.
std::string erasure() {
    const std::string blanks(shownLength, ' ');
    return blanks.empty() ? blanks : '\r' + blanks + '\r';
}

} // namespace

void say(std::string_view text) noexcept {
    try {
        writeAll(erasure().append(text).append("\n"));
        shownLength = 0;
    } catch (...) { // no memory
    }
}

void show(std::string_view text) noexcept {
    try {
        // A longer line would go on in the next one, and could not be overwritten.
        const std::size_t width = terminalWidth(STDERR_FILENO);
        text = text.substr(0, width == 0 ? std::string::npos : width - 1);
        writeAll(erasure().append(text));
        shownLength = text.size();
    } catch (...) { // no memory
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

std::size_t terminalWidth(int descriptor) {
    winsize size = {};
    return ioctl(descriptor, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}
