// ZDA, the date and time with the local time zone.
#pragma once

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

/// The instant in UTC, its year in four digits.
///
///   0 address  1 time  2 day  3 month  4 year  5 zone hours (signed)  6 zone minutes
class KALO_EXPORT zdaMsg_t : public nmeaMsg_t {
public:
    explicit zdaMsg_t(const nmeaFormat_t& format);
    ~zdaMsg_t() override;

    unsigned capabilities() const override;
    /// As sent, the year too; no range is checked.
    bool decodeDate(date_t& out) const override;
    bool decodeTimeOfDay(timeOfDay_t& out) const override;
    /// Offset of the local zone, minutes, with the sign of the hours, as sent.
    /// False, with `out` untouched, also for minutes outside 0 to 59 and an offset beyond the type.
    bool decodeLocalOffset(int& out) const;
};

} // namespace kalo
