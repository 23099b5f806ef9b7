// GSV, the satellites in view. kalo/nmea/gsvSet.h puts the sentences of a group together.
#pragma once

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// One sentence of a group that lists the satellites in view, up to four a sentence.
///
///   0 address  1 sentences in the group  2 number of this one, from 1  3 satellites in view
///   4.. blocks of four: satellite, elevation, azimuth, signal-to-noise ratio
///   last: signal identifier (version 4.10 on), present when the field count is 4 n + 1
///
/// A block is named by its index from 0; an index beyond the last block gives false.
class KALO_EXPORT gsvMsg_t : public nmeaMsg_t {
public:
    explicit gsvMsg_t(const nmeaFormat_t& format);
    ~gsvMsg_t() override;

    bool decodeMessageCount(unsigned& out) const;
    bool decodeMessageNumber(unsigned& out) const;
    bool decodeTotalSatCount(unsigned& out) const;
    /// How many blocks the sentence holds. False for a field count of 4 n + 2 or 4 n + 3, with
    /// `out` untouched, and for the address alone.
    bool decodeSatCount(unsigned& out) const;
    /// Satellite identifier.
    bool decodeSatPrn(unsigned block, unsigned& out) const;
    /// Radians above the horizon.
    bool decodeSatElevation(unsigned block, double& out) const;
    /// Radians from true north.
    bool decodeSatAzimuth(unsigned block, double& out) const;
    /// Signal-to-noise ratio, dB-Hz; not sent for a satellite that is not tracked.
    bool decodeSatSnr(unsigned block, double& out) const;
    bool decodeSignalId(unsigned& out) const;
};

} // namespace kalo
