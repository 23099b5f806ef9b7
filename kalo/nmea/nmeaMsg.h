// The common base of the typed views of a sentence, and the factory that makes the right one.
// Reads what kalo/nmea/nmeaFormat.h has framed; one view class per sentence stands beside it.
#pragma once

#include <string>
#include <vector>

#include "kalo/export.h"
#include "kalo/nmea/nmeaFormat.h"

namespace kalo {

/// A view of a framed sentence: its type and a pointer to the framing object, which it neither owns
/// nor copies. The framing object must outlive the view; after another `init` the view reads the
/// new fields. Views may be read from several threads while nobody re-frames.
///
/// The contract of every `decodeXxx(T& out) const`, here and in the views: true means that the
/// value is present and well formed and that `out` holds it; false means a field is missing, empty
/// or malformed, and `out` is unspecified. Values are in SI units, angles in radians, times in UTC,
/// unless an accessor says otherwise.
class KALO_EXPORT nmeaMsg_t {
public:
    // Bits of `capabilities()`.
    static constexpr unsigned capabilityDate = 1;
    static constexpr unsigned capabilityTimeOfDay = 2;

    nmeaMsg_t(nmeaMsgType_t type, const nmeaFormat_t& format);
    nmeaMsg_t(const nmeaMsg_t&) = default;
    nmeaMsg_t& operator=(const nmeaMsg_t&) = default;
    virtual ~nmeaMsg_t();

    /// Which of `decodeDate` and `decodeTimeOfDay` the class answers.
    virtual unsigned capabilities() const;
    /// Here: false, `out` untouched.
    virtual bool decodeDate(date_t& out) const;
    /// Here: false, `out` untouched.
    virtual bool decodeTimeOfDay(timeOfDay_t& out) const;

    /// The type that the view's class stands for, whatever the framed sentence is.
    nmeaMsgType_t type() const;
    const nmeaFormat_t& format() const;

    unsigned fieldCount() const;
    /// Null beyond the last field.
    const nmeaField_t* field(unsigned index) const;
    /// Field 0, such as "$GPGGA".
    const nmeaField_t* addressField() const;
    /// The index of the first field at or after `start` whose whole text is `text`; -1 without one.
    int findField(const std::string& text, unsigned start) const;
    /// The texts of `count` fields from `first` on, or of as many as there are.
    std::vector<std::string> getFields(unsigned first, unsigned count) const;
    /// The texts of all fields from `first` on.
    std::vector<std::string> getFields(unsigned first) const;

    /// A new view of the class for the sentence's type, which the caller deletes; null for an
    /// invalid sentence and for a type without a class. However few fields there are, a recognised
    /// sentence gets its view.
    static nmeaMsg_t* create(const nmeaFormat_t& format);

private:
    nmeaMsgType_t m_type;
    const nmeaFormat_t* m_format;
};

} // namespace kalo
