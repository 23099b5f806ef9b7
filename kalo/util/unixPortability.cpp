#if !defined(_WIN32) // builds that take every source find one of the two empty

#include "kalo/util/portability.h"

namespace kalo::portability {

int set_stdin_binary() { return 0; }

} // namespace kalo::portability

#endif
