// The encoder of the TSS1 record that kalo/sensors/tss1Msg.h decodes.
#pragma once

#include <cstdint>
#include <string>

#include "kalo/export.h"
#include "kalo/sensors/tss1Msg.h"

namespace kalo {

/// Builds a TSS1 record from a complete set of values, in the units of `tss1Msg_t`. A plain value.
///
/// Heave, roll and pitch are rounded to the nearest count, so that they read back as they were; the
/// accelerations are truncated toward zero, so that a value which was decoded can come back one
/// count smaller in magnitude.
///
/// The record is well formed for: horizontal acceleration 0 to below 9.8048 m/s2, vertical
/// acceleration -20.48 to 20.479375 m/s2, heave below 99.995 m, roll and pitch below 99.995 degrees
/// in magnitude. Ranges are not checked. Beyond them a field has more characters than its columns,
/// or, just beyond those of the vertical acceleration, reads back as another value. A horizontal
/// acceleration below 0 counts as 0; an acceleration whose count does not fit 32 bits gives the
/// nearest count that does; one that is not a number counts as 0. A heave, roll or pitch that is no
/// number has "0nan" for its digits, one that is infinite, or becomes so in counts, "0inf".
class KALO_EXPORT tss1MsgBuilder_t {
public:
    std::uint32_t validMask = 0; ///< which members are set, bits as in `tss1Msg_t`
    double roll = 0;             ///< radians
    double pitch = 0;            ///< radians
    double heave = 0;            ///< metres
    double hAccel = 0;           ///< horizontal acceleration, m/s2
    double vAccel = 0;           ///< vertical acceleration, m/s2
    tss1Msg_t::status_t status = tss1Msg_t::unaidedStable;

    // Each sets its member and the bit of it.
    void setRoll(double radians);
    void setPitch(double radians);
    void setHeave(double metres);
    void setHorizontalAcceleration(double metresPerSecondSquared);
    void setVerticalAcceleration(double metresPerSecondSquared);
    void setStatus(tss1Msg_t::status_t mode);
    /// Nothing is set any more.
    void reset();

    /// The record with CR and LF, 27 bytes for values in range; empty unless exactly the six values
    /// are set, and for a status that is none.
    std::string build() const;
};

} // namespace kalo
