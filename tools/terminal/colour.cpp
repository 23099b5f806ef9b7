#include "tools/terminal/colour.h"

#include <cstdlib>

#include <unistd.h>

namespace {

colouring_t colouring = colouring_t::automatic;

bool isColoured(int descriptor) {
    if (colouring != colouring_t::automatic) {
        return colouring == colouring_t::always;
    }
    const char* const noColour = std::getenv("NO_COLOR");
    const char* const terminal = std::getenv("TERM");
    return (noColour == nullptr || *noColour == '\0') &&
           (terminal == nullptr || terminal != std::string_view("dumb")) && isatty(descriptor) != 0;
}

const char* beginOf(style_t style) {
    switch (style) {
    case style_t::heading: return "\x1B[1m";
    case style_t::fault: return "\x1B[31m";
    case style_t::note: return "\x1B[33m";
    }
    return "";
}

} // namespace

void setColouring(colouring_t when) { colouring = when; }

std::string styled(style_t style, std::string_view text, int descriptor) {
    std::string result(text);
    return isColoured(descriptor) ? beginOf(style) + result + "\x1B[0m" : result;
}
