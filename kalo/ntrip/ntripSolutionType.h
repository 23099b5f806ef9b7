// Where the corrections of a stream come from.
#pragma once

#include <iosfwd>

#include "kalo/export.h"

namespace kalo {

/// Where the corrections of a stream come from.
enum ntripSolutionType_t : int {
    solutionSingle = 0, ///< a single base station
    solutionNetwork = 1 ///< a network of stations
};

} // namespace kalo

/// Writes "Single" or "Network", or "Unknown" for any other value.
///
/// Caveat: the operator is declared outside all namespaces. A namespace with output operators of
/// its own hides it, and the enumeration is then written as a number. Declare this there:
///
///     using ::operator<<;
KALO_EXPORT std::ostream& operator<<(std::ostream& stream, const kalo::ntripSolutionType_t& value);
