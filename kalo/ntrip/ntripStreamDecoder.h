// A stream (STR) record of an NTRIP sourcetable.
#pragma once

#include "kalo/export.h"
#include "kalo/ntrip/ntripAuthType.h"
#include "kalo/ntrip/ntripCarrierType.h"
#include "kalo/ntrip/ntripRecordDecoder.h"
#include "kalo/ntrip/ntripSolutionType.h"

namespace kalo {

/// A record decoder with accessors for three fields of a stream. Index n is field n + 1 of the
/// NTRIP standard. False leaves `out` untouched.
class KALO_EXPORT ntripStreamDecoder_t : public ntripRecordDecoder_t {
public:
    /// Index 5: 0 for none, 1 for L1, 2 for L1 and L2.
    bool decodeCarrierType(ntripCarrierType_t& out) const;
    /// Index 12: 0 for a single base station, 1 for a network.
    bool decodeSolutionType(ntripSolutionType_t& out) const;
    /// Index 15: "N", "B" or "D".
    bool decodeAuthType(ntripAuthType_t& out) const;
};

} // namespace kalo
