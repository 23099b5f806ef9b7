// For constants that a static initialiser in another source may read. Not installed.
//
// In the definition of such an object, KALO_INITIALISED_FIRST follows its name. The object is then
// initialised before all objects without the mark, and destroyed after them. A static library needs
// this; the loader initialises a shared library before the programs that use it. The mark works on
// ELF systems, and does nothing on others.
#pragma once

#if defined(__GNUC__) && defined(__ELF__)
#define KALO_INITIALISED_FIRST __attribute__((init_priority(101))) // the first that is not reserved
#else
#define KALO_INITIALISED_FIRST
#endif
