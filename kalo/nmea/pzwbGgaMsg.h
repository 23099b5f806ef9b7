// "$PZWBGGA", a receiver's proprietary sentence with the fields of GGA. Its accessors are declared
// in kalo/nmea/ggaMsgBase.h.
#pragma once

#include "kalo/export.h"
#include "kalo/nmea/ggaMsgBase.h"

namespace kalo {

/// The fix data of a satellite receiver in a proprietary sentence. Fields and accessors are those
/// of `ggaMsg_t`, where they are listed.
class KALO_EXPORT pzwbGgaMsg_t : public ggaMsgBase_t {
public:
    explicit pzwbGgaMsg_t(const nmeaFormat_t& format);
    ~pzwbGgaMsg_t() override;

    unsigned capabilities() const override;
};

} // namespace kalo
