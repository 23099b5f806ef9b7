// HDT, the true heading.
#pragma once

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// The heading from true north.
///
///     0 address  1 heading  2 T (not read)
class KALO_EXPORT hdtMsg_t : public nmeaMsg_t {
public:
    explicit hdtMsg_t(const nmeaFormat_t& format);
    ~hdtMsg_t() override;

    /// Radians from true north.
    bool decodeHeading(double& out) const;
};

} // namespace kalo
