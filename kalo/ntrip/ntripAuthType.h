// What a caster demands before it gives a stream.
#pragma once

#include <iosfwd>

#include "kalo/export.h"

namespace kalo {

enum ntripAuthType_t : int {
    authNone = 0,  // "N"
    authBasic = 1, // "B"
    authDigest = 2 // "D"
};

} // namespace kalo

/// Writes "None", "Basic" or "Digest", or "Unknown" for any other value.
/// Caveat: the operator stands outside all namespaces. Inside a namespace with output operators of
/// its own it is not found, and the enumeration prints as a number: put `using ::operator<<;`
/// there.
KALO_EXPORT std::ostream& operator<<(std::ostream& stream, const kalo::ntripAuthType_t& value);
