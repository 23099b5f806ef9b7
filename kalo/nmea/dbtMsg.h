// DBT, the depth below the transducer.
#pragma once

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// The depth of the water below the transducer, in up to three units.
///
///     0 address  1 depth (feet)  2 f  3 depth (metres)  4 M  5 depth (fathoms)  6 F
class KALO_EXPORT dbtMsg_t : public nmeaMsg_t {
public:
    explicit dbtMsg_t(const nmeaFormat_t& format);
    ~dbtMsg_t() override;

    /// Metres. Of feet, metres and fathoms, in this order, the first that has a well-formed number
    /// and its unit letter counts.
    ///
    /// Caveat: unit letters are case-sensitive: `f` is feet, `F` is fathoms.
    bool decodeDepth(double& out) const;
};

} // namespace kalo
