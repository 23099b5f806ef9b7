// "$PSIMSSB", the position of a beacon as an acoustic underwater positioning system sees it.
// kalo/nmea/psimLbpMsg.h is the same system's sentence on vessels and vehicles.
#pragma once

#include <string>

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// Two raw coordinates, which letters give their meaning, and two raw additional values likewise:
/// `coords_t` and `addInfo_t` read the letters.
///
///   0 address  1 time  2 beacon  3 status  4 error code  5 coordinate type  6 orientation
///   7 filter code  8 X  9 Y  10 depth  11 expected accuracy  12 kind of additional values
///   13 value 1  14 value 2
///
/// A text decodes whenever its field exists, be it empty. Numbers are passed on as sent.
class KALO_EXPORT psimSsbMsg_t : public nmeaMsg_t {
public:
    // Texts of the letter fields, to compare with.
    static const std::string statusValid;         // "A"
    static const std::string statusInvalid;       // "V"
    static const std::string coordTypeCartesian;  // "C"
    static const std::string coordTypePolar;      // "P"
    static const std::string coordTypeUtm;        // "U"
    static const std::string coordTypeRadians;    // "R"
    static const std::string orientationNorth;    // "N"
    static const std::string orientationEast;     // "E"
    static const std::string orientationHead;     // "H"
    static const std::string filterCodeMeasured;  // "M"
    static const std::string filterCodeFiltered;  // "F"
    static const std::string filterCodePredicted; // "P"
    static const std::string addInfoNone;         // "N"
    static const std::string addInfoTime;         // "T"
    static const std::string addInfoDepth;        // "D"
    static const std::string addInfoCompass;      // "C"
    static const std::string addInfoInclinometer; // "I"

    explicit psimSsbMsg_t(const nmeaFormat_t& format);
    ~psimSsbMsg_t() override;

    unsigned capabilities() const override;
    bool decodeTimeOfDay(timeOfDay_t& out) const override;
    bool decodeBeaconId(std::string& out) const;
    /// The number in the beacon's identifier: what follows from its first digit on, all of it.
    bool decodeBeaconNumber(unsigned& out) const;
    bool decodeStatus(std::string& out) const;
    bool decodeErrorCode(std::string& out) const;
    bool decodeCoordType(std::string& out) const;
    bool decodeOrientation(std::string& out) const;
    bool decodeFilterCode(std::string& out) const;
    bool decodeRawX(double& out) const;
    bool decodeRawY(double& out) const;
    bool decodeDepth(double& out) const;
    bool decodeExpectedAccuracy(double& out) const;
    bool decodeAddInfoType(std::string& out) const;
    bool decodeRawAddInfo1(double& out) const;
    bool decodeRawAddInfo2(double& out) const;

    /// What the raw coordinates mean, by coordinate type and orientation. Refers to the view, which
    /// must outlive it; a copy is a plain value. An accessor that does not fit the layout gives
    /// false and leaves `out` untouched.
    class KALO_EXPORT coords_t {
    public:
        explicit coords_t(const psimSsbMsg_t& msg);

        // Polar (P and H).
        bool decodeRange(double& out) const;
        /// Radians. False leaves `out` untouched.
        bool decodeBearing(double& out) const;
        // Cartesian, by the vessel's head (C and H).
        bool decodeStarboardOffset(double& out) const;
        bool decodeForwardOffset(double& out) const;
        // Cartesian, by north (C and N, or E with the axes exchanged).
        bool decodeNorthOffset(double& out) const;
        bool decodeEastOffset(double& out) const;
        // UTM (U and N, or E with the axes exchanged).
        bool decodeUtmNorthing(double& out) const;
        bool decodeUtmEasting(double& out) const;
        // Geographic (R and N), sent in degrees.
        /// Radians, north positive. False leaves `out` untouched.
        bool decodeLatitude(double& out) const;
        /// Radians, east positive. False leaves `out` untouched.
        bool decodeLongitude(double& out) const;

    private:
        enum layout_t {
            layoutUnknown = 0,
            layoutPolar = 1,
            layoutShipRelative = 2,
            layoutNorthEast = 3,
            layoutEastNorth = 4,
            layoutUtmNorthEast = 5,
            layoutUtmEastNorth = 6,
            layoutGeographic = 7
        };

        KALO_LOCAL static layout_t layoutOf(const psimSsbMsg_t& msg);

        const psimSsbMsg_t* m_msg;
        layout_t m_layout;
    };

    /// What the raw additional values mean, by their kind. Refers to the view as `coords_t` does.
    class KALO_EXPORT addInfo_t {
    public:
        explicit addInfo_t(const psimSsbMsg_t& msg);

        // Inclinometer (I).
        /// Radians. False leaves `out` untouched.
        bool decodeRoll(double& out) const;
        /// Radians. False leaves `out` untouched.
        bool decodePitch(double& out) const;
        // Time (T).
        bool decodeRangeTime(double& out) const;
        // Depth (D).
        bool decodeDepth(double& out) const;

    private:
        enum kind_t { kindNone = 0, kindDepth = 1, kindInclinometer = 2, kindTime = 3 };

        KALO_LOCAL static kind_t kindOf(const psimSsbMsg_t& msg);

        const psimSsbMsg_t* m_msg;
        kind_t m_kind;
    };
};

} // namespace kalo
