// Which carrier-phase data a stream has.
#pragma once

#include <iosfwd>

#include "kalo/export.h"

namespace kalo {

enum ntripCarrierType_t : int {
    carrierNone = 0, // no carrier-phase data
    carrierL1 = 1,   // on L1
    carrierL1L2 = 2  // on L1 and L2
};

} // namespace kalo

/// Writes "None", "L1" or "L1L2", or "Unknown" for any other value.
/// Caveat: the operator stands outside all namespaces. Inside a namespace with output operators of
/// its own it is not found, and the enumeration prints as a number: put `using ::operator<<;`
/// there.
KALO_EXPORT std::ostream& operator<<(std::ostream& stream, const kalo::ntripCarrierType_t& value);
