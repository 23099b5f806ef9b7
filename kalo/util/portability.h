// What differs between platforms. Each platform has a source for it, which is empty elsewhere.
#pragma once

#include "kalo/export.h"

namespace kalo::portability {

/// Puts standard input into binary mode, so that line ends arrive as they were sent. Returns 0, or
/// -1 if Windows refuses. On POSIX systems it does nothing and returns 0.
KALO_EXPORT int set_stdin_binary(); // NOLINT(readability-identifier-naming)

} // namespace kalo::portability
