#if !defined(_WIN32) // every build compiles both sources; one of them is empty

#include "kalo/util/portability.h"

namespace kalo::portability {

int set_stdin_binary() { return 0; }

} // namespace kalo::portability

#endif
