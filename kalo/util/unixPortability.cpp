#include "kalo/util/portability.h"

namespace kalo::portability {

int set_stdin_binary() { return 0; }

} // namespace kalo::portability
