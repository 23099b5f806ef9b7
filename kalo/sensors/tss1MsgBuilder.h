// The encoder of the TSS1 record that kalo/sensors/tss1Msg.h decodes.
#pragma once

#include <cstdint>
#include <string>

#include "kalo/export.h"
#include "kalo/sensors/tss1Msg.h"

namespace kalo {

/// Builds a TSS1 record from a complete set of values, in the units of `tss1Msg_t`. A plain value.
///
/// Heave, roll and pitch are rounded to the nearest count: a decoded value is written as it was
/// read. The accelerations are truncated toward zero: a decoded value may be written one count
/// smaller in magnitude.
///
/// Caveat: values out of range overflow their columns; check them first. The ranges:
///
///     horizontal acceleration  0 to below 9.8048 m/s2
///     vertical acceleration    -20.48 to 20.479375 m/s2
///     heave                    magnitude below 99.995 m
///     roll, pitch              magnitude below 99.995 degrees
///
/// A value out of range is written with more characters than it has columns; a vertical
/// acceleration just out of range reads back as another value instead. A horizontal acceleration
/// below 0 is written as 0. An acceleration whose count does not fit 32 bits is written as the
/// nearest count that does, and NaN as 0. For heave, roll and pitch, NaN is written as "0nan", and
/// infinity, or a value whose count is infinite, as "0inf".
class KALO_EXPORT tss1MsgBuilder_t {
public:
    std::uint32_t validMask = 0; ///< which members are set, bits as in `tss1Msg_t`
    double roll = 0;             ///< radians
    double pitch = 0;            ///< radians
    double heave = 0;            ///< metres
    double hAccel = 0;           ///< horizontal acceleration, m/s2
    double vAccel = 0;           ///< vertical acceleration, m/s2
    tss1Msg_t::status_t status = tss1Msg_t::unaidedStable; ///< mode of the sensor

    /// @name Setters
    /// Each sets a member and its bit in `validMask`.
    /// @{
    void setRoll(double radians);
    void setPitch(double radians);
    void setHeave(double metres);
    void setHorizontalAcceleration(double metresPerSecondSquared);
    void setVerticalAcceleration(double metresPerSecondSquared);
    void setStatus(tss1Msg_t::status_t mode);
    /// @}
    /// Forgets all values.
    void reset();

    /// The record with CR and LF: 27 bytes if all values are in range. Empty if a value is not set,
    /// if `validMask` has any other bit, or if `status` is not one of the enumerators.
    std::string build() const;
};

} // namespace kalo
