// "$PSIMSSB", the position of a beacon from an acoustic underwater positioning system. The same
// system's sentence for vessels and vehicles is in kalo/nmea/psimLbpMsg.h.
#pragma once

#include <string>

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// The position of a beacon, as two raw coordinates X and Y, and two raw additional values. What
/// they mean depends on letters in the sentence: `coords_t` and `addInfo_t` read the letters.
///
///     0 address  1 time  2 beacon  3 status  4 error code  5 coordinate type  6 orientation
///     7 filter code  8 X  9 Y  10 depth  11 expected accuracy  12 kind of additional values
///     13 value 1  14 value 2
///
/// A text decodes whenever its field exists, even if it is empty. Numbers are given as sent.
class KALO_EXPORT psimSsbMsg_t : public nmeaMsg_t {
public:
    /// @name Texts of the letter fields
    /// To compare with what the accessors give.
    /// @{
    static const std::string statusValid;         ///< "A"
    static const std::string statusInvalid;       ///< "V"
    static const std::string coordTypeCartesian;  ///< "C"
    static const std::string coordTypePolar;      ///< "P"
    static const std::string coordTypeUtm;        ///< "U"
    static const std::string coordTypeRadians;    ///< "R"
    static const std::string orientationNorth;    ///< "N"
    static const std::string orientationEast;     ///< "E"
    static const std::string orientationHead;     ///< "H"
    static const std::string filterCodeMeasured;  ///< "M"
    static const std::string filterCodeFiltered;  ///< "F"
    static const std::string filterCodePredicted; ///< "P"
    static const std::string addInfoNone;         ///< "N"
    static const std::string addInfoTime;         ///< "T"
    static const std::string addInfoDepth;        ///< "D"
    static const std::string addInfoCompass;      ///< "C"
    static const std::string addInfoInclinometer; ///< "I"
    /// @}

    explicit psimSsbMsg_t(const nmeaFormat_t& format);
    ~psimSsbMsg_t() override;

    unsigned capabilities() const override;
    bool decodeTimeOfDay(timeOfDay_t& out) const override;
    bool decodeBeaconId(std::string& out) const;
    /// The number in the beacon's identifier. From its first digit on the identifier must be a
    /// number up to its end.
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

    /// The coordinates, understood by coordinate type and orientation. An accessor that does not
    /// belong to these letters gives false and leaves `out` untouched. The view must outlive the
    /// object, which refers to it.
    class KALO_EXPORT coords_t {
    public:
        explicit coords_t(const psimSsbMsg_t& msg);

        /// Polar (P, H): X, as sent.
        bool decodeRange(double& out) const;
        /// Polar (P, H): Y, sent in degrees, given in radians. False leaves `out` untouched.
        bool decodeBearing(double& out) const;
        /// Cartesian, along the vessel's axes (C, H): X, as sent.
        bool decodeStarboardOffset(double& out) const;
        /// Cartesian, along the vessel's axes (C, H): Y, as sent.
        bool decodeForwardOffset(double& out) const;
        /// Cartesian, by north: X (C, N) or Y (C, E), as sent.
        bool decodeNorthOffset(double& out) const;
        /// Cartesian, by north: Y (C, N) or X (C, E), as sent.
        bool decodeEastOffset(double& out) const;
        /// UTM: X (U, N) or Y (U, E), as sent.
        bool decodeUtmNorthing(double& out) const;
        /// UTM: Y (U, N) or X (U, E), as sent.
        bool decodeUtmEasting(double& out) const;
        /// Geographic (R, N): X, sent in degrees, given in radians, north positive. False leaves
        /// `out` untouched.
        bool decodeLatitude(double& out) const;
        /// Geographic (R, N): Y, sent in degrees, given in radians, east positive. False leaves
        /// `out` untouched.
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

    /// The additional values, understood by their kind. An accessor that does not belong to the
    /// kind gives false and leaves `out` untouched. The view must outlive the object, which refers
    /// to it.
    class KALO_EXPORT addInfo_t {
    public:
        explicit addInfo_t(const psimSsbMsg_t& msg);

        /// Inclinometer (I): value 1, sent in degrees, given in radians. False leaves `out`
        /// untouched.
        bool decodeRoll(double& out) const;
        /// Inclinometer (I): value 2, sent in degrees, given in radians. False leaves `out`
        /// untouched.
        bool decodePitch(double& out) const;
        /// Time (T): value 1, as sent.
        bool decodeRangeTime(double& out) const;
        /// Depth (D): value 1, as sent.
        bool decodeDepth(double& out) const;

    private:
        enum kind_t { kindNone = 0, kindDepth = 1, kindInclinometer = 2, kindTime = 3 };

        KALO_LOCAL static kind_t kindOf(const psimSsbMsg_t& msg);

        const psimSsbMsg_t* m_msg;
        kind_t m_kind;
    };
};

} // namespace kalo
