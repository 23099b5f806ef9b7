// One NMEA 0183 sentence: framing, checksum, fields and type. Start here; kalo/nmea/nmeaMsg.h then
// makes a typed view of the framed sentence.
#pragma once

#include <cstddef>

#include "kalo/export.h"
#include "kalo/nmea/nmeaField.h"

namespace kalo {

/// The recognised sentence types. The values are fixed. docs/formats/nmea.md has a table of them.
enum nmeaMsgType_t : int {
    msgTypeUnknown = 0,  ///< not recognised
    msgTypeAlm = 1,      ///< "ALM"
    msgTypeDbt = 2,      ///< "DBT"
    msgTypeDpt = 3,      ///< "DPT"
    msgTypeDtm = 4,      ///< "DTM"
    msgTypeGbs = 5,      ///< "GBS"
    msgTypeGga = 6,      ///< "GGA"
    msgTypeGll = 7,      ///< "GLL"
    msgTypeGsa = 8,      ///< "GSA"
    msgTypeGst = 9,      ///< "GST"
    msgTypeGsv = 10,     ///< "GSV"
    msgTypeHdt = 11,     ///< "HDT"
    msgTypeMwd = 12,     ///< "MWD"
    msgTypeMwv = 13,     ///< "MWV"
    msgTypeRmc = 14,     ///< "RMC"
    msgTypeRot = 15,     ///< "ROT"
    msgTypeThs = 16,     ///< "THS"
    msgTypeVdm = 17,     ///< "VDM", starts with "!"
    msgTypeVtg = 18,     ///< "VTG"
    msgTypeZda = 19,     ///< "ZDA"
    msgTypePzwbGga = 20, ///< "$PZWBGGA"
    msgTypePzwbGst = 21, ///< "$PZWBGST"
    msgTypePzwbMde = 22, ///< "$PZWBMDE"
    msgTypePsimLbp = 23, ///< "$PSIMLBP"
    msgTypePsimSsb = 24, ///< "$PSIMSSB"
    msgTypePtpsr = 25    ///< "$PTPSR"
};

/// One framed sentence. It owns its fields and keeps no pointer to the caller's bytes; a copy is
/// independent of the original. Bad input never throws: `isValid()` is then false. If memory runs
/// out in `init` or an assignment, the object is an invalid sentence without fields, and can be
/// used again.
class KALO_EXPORT nmeaFormat_t {
public:
    /// An invalid sentence without fields, whose `formatError()` is 0.
    nmeaFormat_t();
    /// Frames the `length` bytes at `data`, as `init` does.
    nmeaFormat_t(const char* data, std::size_t length);
    nmeaFormat_t(const nmeaFormat_t& other);
    nmeaFormat_t& operator=(const nmeaFormat_t& other);
    ~nmeaFormat_t();

    /// Frames exactly one sentence: "$" or "!", the body, optionally "*" and two hexadecimal
    /// digits, CR and LF. The digits are the exclusive-or of the bytes between the start character
    /// and "*". Replaces the sentence that was framed before; returns `isValid()`.
    bool init(const char* data, std::size_t length);

    bool isValid() const;

    /// Why the last `init` that failed did so:
    ///
    ///     0 empty, or no "$" or "!" at the start
    ///     1 no CR LF at the end, or invalid checksum digits
    ///     2 the checksum differs
    ///
    /// Caveat: a success does not reset the code; ask for it only while `isValid()` is false.
    int formatError() const;

    /// The type that the address names; `msgTypeUnknown` for an invalid sentence or an unknown
    /// address.
    nmeaMsgType_t type() const;

    /// Number of fields, the address included; 0 for an invalid sentence.
    unsigned fieldCount() const;

    /// A field by its index, or null beyond the last one. Field 0 is the address, such as "$GPGGA".
    /// The field is valid until the next `init` or assignment.
    const nmeaField_t* field(unsigned index) const;

private:
    friend struct fieldAccess_t; // lets the views read fields without a call

    struct state_t;

    KALO_LOCAL unsigned splitFields(const char* body, const char* end, const char* readable);

    state_t* m_state;
};

} // namespace kalo
