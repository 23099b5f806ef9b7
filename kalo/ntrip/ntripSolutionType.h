// Where the corrections of a stream come from.
#pragma once

#include <iosfwd>

#include "kalo/export.h"

namespace kalo {

enum ntripSolutionType_t : int {
    solutionSingle = 0, // a single base
    solutionNetwork = 1 // a network
};

} // namespace kalo

/// Writes "Single" or "Network", or "Unknown" for any other value.
/// Caveat: the operator stands outside all namespaces. Inside a namespace with output operators of
/// its own it is not found, and the enumeration prints as a number: put `using ::operator<<;`
/// there.
KALO_EXPORT std::ostream& operator<<(std::ostream& stream, const kalo::ntripSolutionType_t& value);
