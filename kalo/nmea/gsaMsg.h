// GSA, the satellites used and the dilutions of precision.
#pragma once

#include <vector>

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// The satellites from which the position was computed, and the dilutions of precision.
///
///     0 address  1 selection mode  2 fix type  3-14 satellites used  15 PDOP  16 HDOP  17 VDOP
///     18 identifier of the satellite system (version 4.10 on)
class KALO_EXPORT gsaMsg_t : public nmeaMsg_t {
public:
    explicit gsaMsg_t(const nmeaFormat_t& format);
    ~gsaMsg_t() override;

    /// Selection mode letter, as sent (M manual, A automatic).
    bool decodeManualMode(char& out) const;
    /// Fix type, as sent (1 none, 2 two-dimensional, 3 three-dimensional).
    bool decodeFixMode(unsigned& out) const;
    /// Appends the identifiers of the satellites used to `out` and skips empty fields. False if a
    /// field is missing or is not a number; the identifiers before it have been appended.
    bool decodeSatIds(std::vector<unsigned>& out) const;
    /// Position dilution of precision.
    bool decodePdop(double& out) const;
    /// Horizontal dilution of precision.
    bool decodeHdop(double& out) const;
    /// Vertical dilution of precision.
    bool decodeVdop(double& out) const;
    /// Identifier of the satellite system, as sent.
    bool decodeSignalId(unsigned& out) const;
};

} // namespace kalo
