// The ASCII record of an acoustic tracking system: date, time, and values with tags.
#pragma once

#include <cstddef>
#include <string>

#include "kalo/export.h"
#include "kalo/time/dateTime.h"

namespace kalo {

/// One line, split when it is constructed:
///
///   16 NOV 2026 21:41:01:250 B:12 X:105.2 Y:-33.7 D:250.5 H:271.3*33
///
/// Four tokens for date and time, then tokens of a tag, a colon and a value, all separated by
/// blanks (no other character); at the end "*" and two hexadecimal digits, the exclusive-or of
/// every byte before the "*", may follow, and then a line end. A wrong checksum does not hide the
/// values. The texts stand in 20 slots: 0 day, 1 month, 2 year, 3 time of day, and one for each tag
/// (see the accessors); of a tag that occurs twice the later value holds.
///
/// The object owns copies of the texts; copies are deep and independent. A decoder returns true
/// when the slot holds a value of its kind. The record names no units: what is no angle is passed
/// on as sent.
class KALO_EXPORT atsAsciiMsg_t {
public:
    /// Every slot empty, no checksum error.
    atsAsciiMsg_t();
    /// Parses a line; never fails.
    atsAsciiMsg_t(const char* data, std::size_t length);
    atsAsciiMsg_t(const atsAsciiMsg_t& other);
    atsAsciiMsg_t& operator=(const atsAsciiMsg_t& other);
    ~atsAsciiMsg_t();

    /// The line has a "*" and not exactly two digits of the right checksum behind it.
    bool checksumError() const;

    /// False leaves `out` untouched. A year below 100 is completed by `twoDigitYearToAD`, one of
    /// 100 to 1969 is refused; a day is at most 31, whatever the month.
    /// Caveat: the century of a two-digit year depends on the system clock.
    bool decodeDate(date_t& out) const;
    /// hh:mm:ss, or hh:mm:ss:milliseconds; each part within its range. False leaves `out`
    /// untouched.
    bool decodeTimeOfDay(timeOfDay_t& out) const;

    /// The text of a slot; false, with `out` untouched, when it is empty or there is no such slot.
    bool decodeField(unsigned slot, std::string& out) const;
    /// A decimal number.
    bool decodeField(unsigned slot, unsigned& out) const;
    bool decodeField(unsigned slot, double& out) const;
    /// Degrees as radians. False leaves `out` untouched.
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
