// Colour in text for people: headings are bold, faults red, notes yellow.
#pragma once

#include <string>
#include <string_view>

/// When text is coloured. Automatic: on a terminal, unless NO_COLOR is set and not empty, or TERM
/// is "dumb".
enum class colouring_t { automatic, always, never };

/// For the rest of the run; automatic before.
void setColouring(colouring_t when);

enum class style_t { heading, fault, note };

/// `text` in a style if what goes to `descriptor` is coloured, else as it is.
std::string styled(style_t style, std::string_view text, int descriptor);
