// The TSS1 record of a motion sensor: fixed columns, no checksum. kalo/sensors/tss1MsgBuilder.h
// writes the same record.
#pragma once

#include <cstddef>
#include <cstdint>

#include "kalo/export.h"

namespace kalo {

/// One TSS1 record, such as ":00FF80 -0120U 0105 -0210", with these columns:
///
///     0 ":"  1-2 horizontal acceleration (hex)  3-6 vertical acceleration (hex, two's complement)
///     8 sign, 9-12 heave (cm)  13 status  14 sign, 15-18 roll (0.01 deg)  20 sign, 21-24 pitch
///
/// Each value is decoded on its own: a damaged column affects only its own value. Columns 7 and 19,
/// and everything after column 24, are ignored. The object is a plain value; `init` may be called
/// on it again and again.
class KALO_EXPORT tss1Msg_t {
public:
    /// @name The value of one count
    /// @{
    static constexpr double vAccelScale = 0.000625; ///< 0.0625 cm/s2 in m/s2
    static constexpr double hAccelScale = 0.0383;   ///< 3.83 cm/s2 in m/s2
    static constexpr double heaveScale = 0.01;      ///< 1 cm in metres
    /// One hundredth of a degree in radians.
    static constexpr double rollPitchScale = 3.141592653589793 / 180 * 0.01;
    /// @}

    /// @name Bits of validMask
    /// @{
    static constexpr std::uint32_t validRoll = 0x01;
    static constexpr std::uint32_t validPitch = 0x02;
    static constexpr std::uint32_t validHeave = 0x04;
    static constexpr std::uint32_t validHAccel = 0x08;
    static constexpr std::uint32_t validVAccel = 0x10;
    static constexpr std::uint32_t validStatus = 0x20;
    static constexpr std::uint32_t validAll = 0x3F;
    /// @}

    /// The mode of the sensor: stable has settled, unstable is still settling.
    enum status_t : int {
        unaidedStable = 0,        ///< "U"
        unaidedUnstable = 1,      ///< "u"
        gpsAidedStable = 2,       ///< "G"
        gpsAidedUnstable = 3,     ///< "g"
        headingAidedStable = 4,   ///< "H"
        headingAidedUnstable = 5, ///< "h"
        fullAidedStable = 6,      ///< "F"
        fullAidedUnstable = 7     ///< "f"
    };

    std::uint32_t validMask = 0;     ///< which of the members below hold a value of the record
    double roll = 0;                 ///< radians
    double pitch = 0;                ///< radians
    double heave = 0;                ///< metres
    double hAccel = 0;               ///< horizontal acceleration, m/s2
    double vAccel = 0;               ///< vertical acceleration, m/s2
    status_t status = unaidedStable; ///< mode of the sensor

    /// Decodes the record that begins at `data`. A line end is not needed, and is ignored. With
    /// fewer than 25 bytes, or without ":" at the start, no value is valid afterwards.
    void init(const char* data, std::size_t length);

    /// @name Values
    /// Each gives its member if `init` found the value. False leaves `out` untouched.
    /// @{
    bool getRoll(double& out) const;
    bool getPitch(double& out) const;
    bool getHeave(double& out) const;
    bool getHorizontalAcceleration(double& out) const;
    bool getVerticalAcceleration(double& out) const;
    bool getStatus(status_t& out) const;
    /// @}

    /// @name Single columns
    /// What `init` calls for each value, with a pointer to the first character of its columns; all
    /// of them must be readable. Success sets the member. `validMask` is never changed.
    /// @{
    bool decodeRoll(const char* field);
    bool decodePitch(const char* field);
    bool decodeHeave(const char* field);
    bool decodeHAccel(const char* field);
    bool decodeVAccel(const char* field);
    bool decodeStatus(const char* field);
    /// @}
};

} // namespace kalo
