// What differs between platforms. Each platform has a source for it, which is empty elsewhere.
#pragma once

#include "kalo/export.h"

namespace kalo::portability {

/// Puts standard input into binary mode, so that no line end is translated on the way in. Returns
/// 0, on Windows -1 on failure; on POSIX systems there is nothing to do.
KALO_EXPORT int set_stdin_binary(); // NOLINT(readability-identifier-naming)

} // namespace kalo::portability
