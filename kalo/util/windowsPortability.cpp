#if defined(_WIN32) // builds that take every source find one of the two empty

#include "kalo/util/portability.h"

#include <cstdio>

#include <fcntl.h>
#include <io.h>

namespace kalo::portability {

int set_stdin_binary() { return _setmode(_fileno(stdin), _O_BINARY) == -1 ? -1 : 0; }

} // namespace kalo::portability

#endif
