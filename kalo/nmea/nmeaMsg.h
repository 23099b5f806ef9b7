// The base class of the typed views of a sentence, and the factory that makes the right view.
// A view reads a sentence that kalo/nmea/nmeaFormat.h has framed; each sentence has a header of its
// own in kalo/nmea.
#pragma once

#include <string>
#include <vector>

#include "kalo/export.h"
#include "kalo/nmea/nmeaFormat.h"

namespace kalo {

/// A view of a framed sentence. It consists of a type and a pointer to the `nmeaFormat_t`, which it
/// neither owns nor copies: the `nmeaFormat_t` must outlive the view. After another `init` the view
/// reads the new fields. Several threads may read views of a sentence while none frames it again.
///
/// Every `decodeXxx(T& out) const`, here and in the views, keeps this contract: true means that the
/// value is present and well formed, and that `out` holds it. False means that a field is missing,
/// empty or malformed; `out` is then unspecified, unless the accessor says that it is left
/// untouched. Values are in SI units, angles in radians and times in UTC, unless the accessor says
/// otherwise. "As sent" means that the value is not converted.
class KALO_EXPORT nmeaMsg_t {
public:
    static constexpr unsigned capabilityDate = 1;      ///< bit of `capabilities()`
    static constexpr unsigned capabilityTimeOfDay = 2; ///< bit of `capabilities()`

    nmeaMsg_t(nmeaMsgType_t type, const nmeaFormat_t& format);
    nmeaMsg_t(const nmeaMsg_t&) = default;
    nmeaMsg_t& operator=(const nmeaMsg_t&) = default;
    virtual ~nmeaMsg_t();

    /// Whether the sentence carries a date and a time of day: bits, 0 for neither.
    ///
    /// Caveat: `ptpsrMsg_t` has a time of day and gives 0.
    virtual unsigned capabilities() const;
    /// The date in UTC. For a sentence that carries none: false, with `out` untouched.
    virtual bool decodeDate(date_t& out) const;
    /// The time of day in UTC. For a sentence that carries none: false, with `out` untouched.
    virtual bool decodeTimeOfDay(timeOfDay_t& out) const;

    /// The type that the view's class stands for, even if the framed sentence has another.
    nmeaMsgType_t type() const;
    /// The framed sentence.
    const nmeaFormat_t& format() const;

    /// As in `nmeaFormat_t`.
    unsigned fieldCount() const;
    /// As in `nmeaFormat_t`: null beyond the last field.
    const nmeaField_t* field(unsigned index) const;
    /// Field 0, such as "$GPGGA".
    const nmeaField_t* addressField() const;
    /// The index of the first field, from `start` on, whose whole text is `text`; -1 if there is
    /// none.
    int findField(const std::string& text, unsigned start) const;
    /// The texts of `count` fields from `first` on, or of as many of them as there are.
    std::vector<std::string> getFields(unsigned first, unsigned count) const;
    /// The texts of all fields from `first` on.
    std::vector<std::string> getFields(unsigned first) const;

    /// Makes a view of the class that belongs to the sentence's type; the caller deletes it. Null
    /// for an invalid sentence and for a type without a view. A recognised sentence has a view even
    /// if all its fields are missing.
    static nmeaMsg_t* create(const nmeaFormat_t& format);

private:
    friend struct fieldAccess_t; // lets the views read fields without a call

    nmeaMsgType_t m_type;
    const nmeaFormat_t* m_format;
};

} // namespace kalo
