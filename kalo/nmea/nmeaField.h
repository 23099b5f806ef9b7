// One field of a sentence: its text, comparisons, and decoders that turn it into values.
// kalo/nmea/nmeaFormat.h splits a sentence into fields; the views in kalo/nmea read them.
#pragma once

#include <cstddef>
#include <string>

#include "kalo/export.h"
#include "kalo/time/dateTime.h"

namespace kalo {

/// The text of one comma-separated field: an owned copy of its bytes, neither trimmed nor
/// translated. Fields are values; comparisons are exact, byte by byte.
///
/// A decoder returns true if the whole field is a value of its kind; `out` then holds the value.
/// After false, `out` is unspecified, unless the decoder's comment says that it is left untouched.
class KALO_EXPORT nmeaField_t {
public:
    nmeaField_t() = default;
    /// Copies the `length` bytes at `data`.
    nmeaField_t(const char* data, std::size_t length);
    explicit nmeaField_t(const std::string& text);

    /// Replaces the text with a copy of the `length` bytes at `data`. If memory runs out, here or
    /// in an assignment, the field keeps the text that it had.
    void init(const char* data, std::size_t length);
    nmeaField_t& operator=(const std::string& text);

    bool isEmpty() const;
    const char* data() const;
    std::size_t size() const;
    const std::string& toString() const;

    bool operator==(const std::string& text) const;
    bool operator!=(const std::string& text) const;
    bool startsWith(const std::string& text) const;
    bool endsWith(const std::string& text) const;

    /// The text as it is, even if it is empty; always true.
    bool decode(std::string& out) const;
    /// A text of exactly one byte. False leaves `out` untouched.
    bool decode(char& out) const;
    /// @name Numbers
    /// By the rules of kalo/util/stringUtil.h; `base` is 10, 16 or 8.
    /// @{
    bool decode(short& out, int base) const;
    bool decode(unsigned short& out, int base) const;
    bool decode(int& out, int base) const;
    bool decode(unsigned& out, int base) const;
    bool decode(long long& out, int base) const;
    bool decode(unsigned long long& out, int base) const;
    bool decode(float& out) const;
    bool decode(double& out) const;
    /// @}

    /// Degrees and minutes, ddmm.mmmm, in radians. Never negative; no upper bound is checked. False
    /// leaves `out` untouched.
    bool decodeLatitude(double& out) const;
    /// Degrees and minutes, dddmm.mmmm, in radians. Never negative; no upper bound is checked.
    /// False leaves `out` untouched.
    bool decodeLongitude(double& out) const;
    /// +1.0 for "N", -1.0 for "S". False leaves `out` untouched.
    bool decodeNS(double& out) const;
    /// +1.0 for "E", -1.0 for "W". False leaves `out` untouched.
    bool decodeEW(double& out) const;
    /// Decimal degrees, in radians. False leaves `out` untouched.
    bool decodeAsRadians(double& out) const;
    /// UTC, hhmmss with an optional fraction; no range is checked.
    bool decodeHHMMSS(timeOfDay_t& out) const;
    /// ddmmyy; `twoDigitYearToAD` completes the year with `cutoff`. No range is checked.
    ///
    /// Caveat: the century depends on the system clock.
    bool decodeDDMMYY(date_t& out, unsigned cutoff) const;
    /// An IPv4 address a.b.c.d; a is the most significant byte of `out`. White space before the
    /// numbers and the dots is skipped, and any text after the fourth number is ignored. False
    /// leaves `out` untouched.
    bool decodeIpv4Address(unsigned& out) const;

private:
    friend struct fieldAccess_t; // lets the views read the text without a call
    friend class nmeaFormat_t;   // fills the fields of a sentence

    std::string m_text;
};

} // namespace kalo
