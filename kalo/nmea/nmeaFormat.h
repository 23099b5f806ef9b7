// One NMEA 0183 sentence: framing, checksum, fields and type. The entry to everything in
// kalo/nmea; kalo/nmea/nmeaMsg.h makes a typed view of what is framed here.
#pragma once

#include <cstddef>

#include "kalo/export.h"
#include "kalo/nmea/nmeaField.h"

namespace kalo {

/// The sentence types that are recognised. The values are fixed.
enum nmeaMsgType_t : int {
    msgTypeUnknown = 0,
    msgTypeAlm = 1,      // "ALM"
    msgTypeDbt = 2,      // "DBT"
    msgTypeDpt = 3,      // "DPT"
    msgTypeDtm = 4,      // "DTM"
    msgTypeGbs = 5,      // "GBS"
    msgTypeGga = 6,      // "GGA"
    msgTypeGll = 7,      // "GLL"
    msgTypeGsa = 8,      // "GSA"
    msgTypeGst = 9,      // "GST"
    msgTypeGsv = 10,     // "GSV"
    msgTypeHdt = 11,     // "HDT"
    msgTypeMwd = 12,     // "MWD"
    msgTypeMwv = 13,     // "MWV"
    msgTypeRmc = 14,     // "RMC"
    msgTypeRot = 15,     // "ROT"
    msgTypeThs = 16,     // "THS"
    msgTypeVdm = 17,     // "VDM", starts with "!"
    msgTypeVtg = 18,     // "VTG"
    msgTypeZda = 19,     // "ZDA"
    msgTypePzwbGga = 20, // "$PZWBGGA"
    msgTypePzwbGst = 21, // "$PZWBGST"
    msgTypePzwbMde = 22, // "$PZWBMDE"
    msgTypePsimLbp = 23, // "$PSIMLBP"
    msgTypePsimSsb = 24, // "$PSIMSSB"
    msgTypePtpsr = 25    // "$PTPSR"
};

/// One framed sentence. It owns its fields and holds no pointer to the caller's bytes; copies are
/// deep and independent. Bad input shows as `isValid()` false, never as an exception.
class KALO_EXPORT nmeaFormat_t {
public:
    /// Invalid, without fields, `formatError()` 0.
    nmeaFormat_t();
    /// Frames the `length` bytes at `data`, as `init` does.
    nmeaFormat_t(const char* data, std::size_t length);
    nmeaFormat_t(const nmeaFormat_t& other);
    nmeaFormat_t& operator=(const nmeaFormat_t& other);
    ~nmeaFormat_t();

    /// Frames exactly one sentence: "$" or "!", the body, optionally "*" and two hexadecimal digits
    /// of its exclusive-or, CR and LF. Replaces what was framed before; returns `isValid()`.
    bool init(const char* data, std::size_t length);

    bool isValid() const;

    /// Why the last failed `init` failed:
    /// 0 empty, or no "$" or "!" at the start; 1 no CR LF at the end, or checksum digits that are
    /// none; 2 the checksum differs.
    /// Caveat: a later success leaves the code as it is; ask only while `isValid()` is false.
    int formatError() const;

    /// `msgTypeUnknown` while invalid and for a sentence that is not recognised.
    nmeaMsgType_t type() const;

    unsigned fieldCount() const;

    /// Field 0 is the address field such as "$GPGGA"; null beyond the last field. The field lives
    /// until the next `init` or assignment.
    const nmeaField_t* field(unsigned index) const;

private:
    struct state_t;

    KALO_LOCAL void splitFields(const char* body, std::size_t length);

    state_t* m_state;
};

} // namespace kalo
