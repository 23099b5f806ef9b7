// THS, the true heading and its status.
#pragma once

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// The heading from true north, with its mode.
///
///     0 address  1 heading  2 mode letter
class KALO_EXPORT thsMsg_t : public nmeaMsg_t {
public:
    explicit thsMsg_t(const nmeaFormat_t& format);
    ~thsMsg_t() override;

    /// Radians from true north.
    bool decodeHeading(double& out) const;
    /// Mode letter, as sent.
    bool decodeValidity(char& out) const;
};

} // namespace kalo
