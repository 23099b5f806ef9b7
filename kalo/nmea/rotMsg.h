// ROT, the rate of turn.
#pragma once

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// The rate at which the vessel turns.
///
///     0 address  1 rate of turn (degrees per minute, negative to port)  2 status letter
class KALO_EXPORT rotMsg_t : public nmeaMsg_t {
public:
    explicit rotMsg_t(const nmeaFormat_t& format);
    ~rotMsg_t() override;

    /// Radians per second, negative to port. False leaves `out` untouched.
    bool decodeRateOfTurn(double& out) const;
    /// Status letter, as sent.
    bool decodeValidity(char& out) const;
};

} // namespace kalo
