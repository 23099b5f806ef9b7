// DPT, the depth and the offset of the transducer.
#pragma once

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// The depth of the water below the transducer.
///
///     0 address  1 depth below the transducer  2 offset of the transducer (not read)
class KALO_EXPORT dptMsg_t : public nmeaMsg_t {
public:
    explicit dptMsg_t(const nmeaFormat_t& format);
    ~dptMsg_t() override;

    /// Metres below the transducer; the offset is not applied.
    bool decodeDepth(double& out) const;
};

} // namespace kalo
