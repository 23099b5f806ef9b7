// "$PZWBGGA", a receiver's proprietary sentence with the fields of GGA.
#pragma once

#include "kalo/export.h"
#include "kalo/nmea/ggaMsgBase.h"

namespace kalo {

/// The view of "$PZWBGGA"; layout and accessors in kalo/nmea/ggaMsgBase.h.
class KALO_EXPORT pzwbGgaMsg_t : public ggaMsgBase_t {
public:
    explicit pzwbGgaMsg_t(const nmeaFormat_t& format);
    ~pzwbGgaMsg_t() override;

    unsigned capabilities() const override;
};

} // namespace kalo
