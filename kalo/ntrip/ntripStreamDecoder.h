// A stream (STR) record of an NTRIP sourcetable.
#pragma once

#include "kalo/export.h"
#include "kalo/ntrip/ntripAuthType.h"
#include "kalo/ntrip/ntripCarrierType.h"
#include "kalo/ntrip/ntripRecordDecoder.h"
#include "kalo/ntrip/ntripSolutionType.h"

namespace kalo {

/// A record decoder that knows three fields of a stream; index n is field n + 1 of the NTRIP
/// standard. The three leave `out` untouched on false.
class KALO_EXPORT ntripStreamDecoder_t : public ntripRecordDecoder_t {
public:
    /// Index 5: 0 none, 1 L1, 2 L1 and L2.
    bool decodeCarrierType(ntripCarrierType_t& out) const;
    /// Index 12: 0 single base, 1 network.
    bool decodeSolutionType(ntripSolutionType_t& out) const;
    /// Index 15: "N", "B" or "D".
    bool decodeAuthType(ntripAuthType_t& out) const;
};

} // namespace kalo
