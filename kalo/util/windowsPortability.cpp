#if defined(_WIN32) // every build compiles both sources; one of them is empty

#include "kalo/util/portability.h"

#include <cstdio>

#include <fcntl.h>
#include <io.h>

namespace kalo::portability {

int set_stdin_binary() { return _setmode(_fileno(stdin), _O_BINARY) == -1 ? -1 : 0; }

} // namespace kalo::portability

#endif
