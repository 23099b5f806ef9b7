// "$PSIMLBP", the position of a vessel or vehicle from an acoustic underwater positioning system.
// The same system's sentence for beacons is in kalo/nmea/psimSsbMsg.h.
#pragma once

#include <string>

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// The position of a vessel or vehicle, as two raw coordinates X and Y, with its error ellipse.
/// What the coordinates mean depends on a letter in the sentence, which `coords_t` reads.
///
///     0 address  1 time  2 (not read)  3 type of the object  4 status  5 coordinate type  6 X  7 Y
///     8 depth  9 semi-major axis  10 semi-minor axis  11 orientation of the ellipse  12 range RMS
///
/// A text decodes whenever its field exists, even if it is empty. All numbers except the
/// orientation are given as sent.
class KALO_EXPORT psimLbpMsg_t : public nmeaMsg_t {
public:
    /// @name Texts of the letter fields
    /// To compare with what the accessors give.
    /// @{
    static const std::string typeVessel;           ///< "Ve"
    static const std::string typeRov1;             ///< "R1"
    static const std::string typeRov2;             ///< "R2"
    static const std::string typeRov3;             ///< "R3"
    static const std::string typeRov4;             ///< "R4"
    static const std::string statusValid;          ///< "A"
    static const std::string statusUnknown;        ///< "???"
    static const std::string coordTypeCartesianNE; ///< "C"
    static const std::string coordTypeCartesianEN; ///< "L"
    static const std::string coordTypeUtmNE;       ///< "U"
    static const std::string coordTypeUtmEN;       ///< "E"
    static const std::string coordTypeRadians;     ///< "R"
    /// @}

    explicit psimLbpMsg_t(const nmeaFormat_t& format);
    ~psimLbpMsg_t() override;

    unsigned capabilities() const override;
    bool decodeTimeOfDay(timeOfDay_t& out) const override;
    bool decodeType(std::string& out) const;
    bool decodeStatus(std::string& out) const;
    bool decodeCoordType(std::string& out) const;
    bool decodeRawX(double& out) const;
    bool decodeRawY(double& out) const;
    bool decodeDepth(double& out) const;
    bool decodeSemiMajor(double& out) const;
    bool decodeSemiMinor(double& out) const;
    /// Orientation of the ellipse, sent in degrees, given in radians. False leaves `out` untouched.
    bool decodeOrientation(double& out) const;
    bool decodeRangeRms(double& out) const;

    /// The coordinates, understood by the coordinate type. An accessor that does not belong to the
    /// type gives false and leaves `out` untouched. The view must outlive the object, which refers
    /// to it.
    class KALO_EXPORT coords_t {
    public:
        explicit coords_t(const psimLbpMsg_t& msg);

        /// Cartesian: X (C) or Y (L), as sent.
        bool decodeNorthOffset(double& out) const;
        /// Cartesian: Y (C) or X (L), as sent.
        bool decodeEastOffset(double& out) const;
        /// UTM: X (U) or Y (E), as sent.
        bool decodeUtmNorthing(double& out) const;
        /// UTM: Y (U) or X (E), as sent.
        bool decodeUtmEasting(double& out) const;
        /// Geographic (R): X, sent in degrees, given in radians, north positive. False leaves `out`
        /// untouched.
        bool decodeLatitude(double& out) const;
        /// Geographic (R): Y, sent in degrees, given in radians, east positive. False leaves `out`
        /// untouched.
        bool decodeLongitude(double& out) const;

    private:
        enum layout_t {
            layoutUnknown = 0,
            layoutCartesianNE = 1,
            layoutCartesianEN = 2,
            layoutUtmNE = 3,
            layoutUtmEN = 4,
            layoutGeographic = 5
        };

        KALO_LOCAL static layout_t layoutOf(const psimLbpMsg_t& msg);

        const psimLbpMsg_t* m_msg;
        layout_t m_layout;
    };
};

} // namespace kalo
