// "$PSIMLBP", the position of a vessel or vehicle from an acoustic underwater positioning system.
// kalo/nmea/psimSsbMsg.h is the same system's sentence on beacons.
#pragma once

#include <string>

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// Two raw coordinates, which a letter gives their meaning (`coords_t` reads it), with their error
/// ellipse.
///
///   0 address  1 time  2 (not read)  3 type of the object  4 status  5 coordinate type  6 X  7 Y
///   8 depth  9 semi-major axis  10 semi-minor axis  11 orientation of the ellipse  12 range RMS
///
/// A text decodes whenever its field exists, be it empty. All numbers but the orientation are
/// passed on as sent.
class KALO_EXPORT psimLbpMsg_t : public nmeaMsg_t {
public:
    // Texts of the letter fields, to compare with.
    static const std::string typeVessel;           // "Ve"
    static const std::string typeRov1;             // "R1"
    static const std::string typeRov2;             // "R2"
    static const std::string typeRov3;             // "R3"
    static const std::string typeRov4;             // "R4"
    static const std::string statusValid;          // "A"
    static const std::string statusUnknown;        // "???"
    static const std::string coordTypeCartesianNE; // "C"
    static const std::string coordTypeCartesianEN; // "L"
    static const std::string coordTypeUtmNE;       // "U"
    static const std::string coordTypeUtmEN;       // "E"
    static const std::string coordTypeRadians;     // "R"

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
    /// Radians. False leaves `out` untouched.
    bool decodeOrientation(double& out) const;
    bool decodeRangeRms(double& out) const;

    /// What the raw coordinates mean, by the coordinate type. Refers to the view, which must
    /// outlive it; a copy is a plain value. An accessor that does not fit the layout gives false
    /// and leaves `out` untouched.
    class KALO_EXPORT coords_t {
    public:
        explicit coords_t(const psimLbpMsg_t& msg);

        // Cartesian (C, or L with the axes exchanged).
        bool decodeNorthOffset(double& out) const;
        bool decodeEastOffset(double& out) const;
        // UTM (U, or E with the axes exchanged).
        bool decodeUtmNorthing(double& out) const;
        bool decodeUtmEasting(double& out) const;
        // Geographic (R), sent in degrees.
        /// Radians, north positive. False leaves `out` untouched.
        bool decodeLatitude(double& out) const;
        /// Radians, east positive. False leaves `out` untouched.
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
