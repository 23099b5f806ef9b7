// The ASCII record of an acoustic tracking system: date, time, and values with tags.
#pragma once

#include <cstddef>
#include <string>

#include "kalo/export.h"
#include "kalo/time/dateTime.h"

namespace kalo {

/// One line, split when it is constructed:
///
///     16 NOV 2026 21:41:01:250 B:12 X:105.2 Y:-33.7 D:250.5 H:271.3*33
///
/// Four tokens for date and time come first, then tokens that consist of a tag, a colon and a
/// value. Blanks separate the tokens, and no other character does. "*" and two hexadecimal digits
/// may follow, then a line end. The digits are the exclusive-or of all bytes before "*"; if they
/// are wrong, the values can still be read.
///
/// The texts are stored in 20 slots: 0 day, 1 month, 2 year, 3 time of day, and one for each tag,
/// as the accessors say. If a tag occurs twice, the later value counts.
///
/// The object owns its texts; a copy is independent of the original. If memory runs out in an
/// assignment, some texts are the old ones and some the new, and the object can be used again. A
/// decoder returns true if the slot holds a value of its kind. Angles are given in radians; the
/// record names no other units, and all other values are given as sent.
class KALO_EXPORT atsAsciiMsg_t {
public:
    /// An object with all slots empty and no checksum error.
    atsAsciiMsg_t();
    /// Parses a line. Never fails: what the line lacks stays empty.
    atsAsciiMsg_t(const char* data, std::size_t length);
    atsAsciiMsg_t(const atsAsciiMsg_t& other);
    atsAsciiMsg_t& operator=(const atsAsciiMsg_t& other);
    ~atsAsciiMsg_t();

    /// Whether the line has a "*" that is not followed by exactly two digits with the right
    /// checksum.
    bool checksumError() const;

    /// The date. `twoDigitYearToAD` completes a year below 100; years from 100 to 1969 are refused.
    /// A day up to 31 is accepted in every month. False leaves `out` untouched.
    ///
    /// Caveat: the century of a two-digit year depends on the system clock.
    bool decodeDate(date_t& out) const;
    /// The time of day, hh:mm:ss or hh:mm:ss:milliseconds; each part must be within its range.
    /// False leaves `out` untouched.
    bool decodeTimeOfDay(timeOfDay_t& out) const;

    /// The text of a slot. False, with `out` untouched, if it is empty or there is no such slot.
    bool decodeField(unsigned slot, std::string& out) const;
    /// A slot as a decimal number.
    bool decodeField(unsigned slot, unsigned& out) const;
    /// A slot as a number.
    bool decodeField(unsigned slot, double& out) const;
    /// A slot with degrees, in radians. False leaves `out` untouched.
    bool decodeAsRadians(unsigned slot, double& out) const;

    bool decodeBeaconId(std::string& out) const;           ///< B, slot 4
    bool decodeBeaconNumber(unsigned& out) const;          ///< B, slot 4
    bool decodeBeaconX(double& out) const;                 ///< X, slot 5
    bool decodeBeaconY(double& out) const;                 ///< Y, slot 6
    bool decodeBeaconDepth(double& out) const;             ///< D, slot 7
    bool decodeVesselPitch(double& out) const;             ///< P, slot 8, radians
    bool decodeVesselRoll(double& out) const;              ///< R, slot 9, radians
    bool decodeVesselHeading(double& out) const;           ///< H, slot 10, radians
    bool decodeErrorCode(std::string& out) const;          ///< E, slot 11
    bool decodeAnglePitchTelemetry(double& out) const;     ///< AP, slot 12, radians
    bool decodeAngleRollTelemetry(double& out) const;      ///< AR, slot 13, radians
    bool decodeCurrentFlowSpeed(double& out) const;        ///< CS, slot 14
    bool decodeCurrentFlowDirection(double& out) const;    ///< CD, slot 15, radians
    bool decodeVesselPositionX(double& out) const;         ///< SX, slot 16
    bool decodeVesselPositionY(double& out) const;         ///< SY, slot 17
    bool decodeVesselPositionHdop(double& out) const;      ///< SH, slot 18
    bool decodeVesselPositionQuality(unsigned& out) const; ///< SQ, slot 19

private:
    struct state_t;

    state_t* m_state;
};

} // namespace kalo
