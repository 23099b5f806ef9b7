// For constants that the static initialiser of another source may read; not installed.
// KALO_INITIALISED_FIRST behind the name of such an object, where it is defined, has it initialised
// before every object without a mark, and destroyed after them. Only a static library needs it: the
// loader initialises a shared one before what uses it. Elsewhere than on ELF systems it does
// nothing.
#pragma once

#if defined(__GNUC__) && defined(__ELF__)
#define KALO_INITIALISED_FIRST __attribute__((init_priority(101))) // the first that is not reserved
#else
#define KALO_INITIALISED_FIRST
#endif
