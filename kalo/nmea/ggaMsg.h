// GGA, the fix data of a satellite receiver.
#pragma once

#include "kalo/export.h"
#include "kalo/nmea/ggaMsgBase.h"

namespace kalo {

/// The view of GGA from any talker; layout and accessors in kalo/nmea/ggaMsgBase.h.
class KALO_EXPORT ggaMsg_t : public ggaMsgBase_t {
public:
    explicit ggaMsg_t(const nmeaFormat_t& format);
    ~ggaMsg_t() override;

    unsigned capabilities() const override;
};

} // namespace kalo
