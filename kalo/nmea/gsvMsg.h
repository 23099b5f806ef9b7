// GSV, the satellites in view. kalo/nmea/gsvSet.h combines the sentences of a group.
#pragma once

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// One sentence of a group that lists the satellites in view, usually four in each sentence.
///
///     0 address  1 sentences in the group  2 number of this sentence, from 1
///     3 satellites in view, of the whole group
///     4.. blocks of four fields: satellite, elevation, azimuth, signal-to-noise ratio
///     last: signal identifier (version 4.10 on), present if the field count is 4 n + 1
///
/// The accessors of a block count the blocks from 0; a block beyond the last gives false.
class KALO_EXPORT gsvMsg_t : public nmeaMsg_t {
public:
    explicit gsvMsg_t(const nmeaFormat_t& format);
    ~gsvMsg_t() override;

    /// Number of sentences in the group.
    bool decodeMessageCount(unsigned& out) const;
    /// Number of this sentence in the group, from 1.
    bool decodeMessageNumber(unsigned& out) const;
    /// Number of satellites in view, of the whole group.
    bool decodeTotalSatCount(unsigned& out) const;
    /// Number of blocks in this sentence. False for a sentence that consists only of its address,
    /// and, with `out` untouched, for a field count of 4 n + 2 or 4 n + 3.
    bool decodeSatCount(unsigned& out) const;
    /// Satellite identifier.
    bool decodeSatPrn(unsigned block, unsigned& out) const;
    /// Radians above the horizon.
    bool decodeSatElevation(unsigned block, double& out) const;
    /// Radians from true north.
    bool decodeSatAzimuth(unsigned block, double& out) const;
    /// Signal-to-noise ratio, dB-Hz; not sent for a satellite that is not tracked.
    bool decodeSatSnr(unsigned block, double& out) const;
    /// Signal identifier, as sent.
    bool decodeSignalId(unsigned& out) const;
};

} // namespace kalo
