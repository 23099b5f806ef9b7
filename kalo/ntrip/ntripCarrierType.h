// Which carrier-phase data a stream contains.
#pragma once

#include <iosfwd>

#include "kalo/export.h"

namespace kalo {

/// Which carrier-phase data a stream contains.
enum ntripCarrierType_t : int {
    carrierNone = 0, ///< no carrier-phase data
    carrierL1 = 1,   ///< on L1
    carrierL1L2 = 2  ///< on L1 and L2
};

} // namespace kalo

/// Writes "None", "L1" or "L1L2", or "Unknown" for any other value.
///
/// Caveat: the operator is declared outside all namespaces. A namespace with output operators of
/// its own hides it, and the enumeration is then written as a number. Declare this there:
///
///     using ::operator<<;
KALO_EXPORT std::ostream& operator<<(std::ostream& stream, const kalo::ntripCarrierType_t& value);
