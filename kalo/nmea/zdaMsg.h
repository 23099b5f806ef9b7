// ZDA, the date and time with the local time zone.
#pragma once

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// Date and time of day in UTC, and the offset of the local time zone.
///
///     0 address  1 time  2 day  3 month  4 year (four digits)  5 zone hours (signed)
///     6 zone minutes
class KALO_EXPORT zdaMsg_t : public nmeaMsg_t {
public:
    explicit zdaMsg_t(const nmeaFormat_t& format);
    ~zdaMsg_t() override;

    unsigned capabilities() const override;
    /// The date in UTC. The year is given as sent; no range is checked.
    bool decodeDate(date_t& out) const override;
    bool decodeTimeOfDay(timeOfDay_t& out) const override;
    /// Offset of the local time zone in minutes: 60 times the zone hours, and the zone minutes with
    /// the sign of the hours. False, with `out` untouched, also for zone minutes outside 0 to 59
    /// and for an offset that the type cannot hold.
    ///
    /// Caveat: -00 hours count as 0: -00,30 gives 30.
    bool decodeLocalOffset(int& out) const;
};

} // namespace kalo
