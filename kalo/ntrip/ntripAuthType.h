// How a caster wants a client of a stream to authenticate.
#pragma once

#include <iosfwd>

#include "kalo/export.h"

namespace kalo {

/// How a client of a stream authenticates.
enum ntripAuthType_t : int {
    authNone = 0,  ///< "N"
    authBasic = 1, ///< "B"
    authDigest = 2 ///< "D"
};

} // namespace kalo

/// Writes "None", "Basic" or "Digest", or "Unknown" for any other value.
///
/// Caveat: the operator is declared outside all namespaces. A namespace with output operators of
/// its own hides it, and the enumeration is then written as a number. Declare this there:
///
///     using ::operator<<;
KALO_EXPORT std::ostream& operator<<(std::ostream& stream, const kalo::ntripAuthType_t& value);
