// Completes partial times: with the date, GPS week and leap seconds known from earlier records of
// an input, a time of day or the seconds into a GPS week become a Unix timestamp.
#pragma once

#include "kalo/export.h"
#include "kalo/time/dateTime.h"
#include "kalo/time/gpsTime.h"

namespace kalo {

/// What is known about the time of one input. Keep one context for each input, and set what its
/// records tell; a value stays known until a later one replaces it. The context does nothing at
/// midnight or at the end of a week: the caller keeps date and week current. It cannot be copied or
/// moved, and only one thread at a time may use it.
///
/// Caveat: a conversion that needs a value which was not set gives 0.0, which is also the timestamp
/// of 1970-01-01.
class KALO_EXPORT timeContext_t {
public:
    timeContext_t();
    timeContext_t(const timeContext_t&) = delete;
    timeContext_t& operator=(const timeContext_t&) = delete;
    ~timeContext_t();

    /// The parameters for conversions from GPS time.
    void setGps2Utc(const gps2utc_t& parameters);
    /// The UTC date for `timeOfDayToUnix`.
    void setDate(const date_t& date);
    /// The full GPS week for `gpsWeekSecondsToUnix`.
    void setGpsWeek(unsigned week);
    /// Sets the UTC date of a Unix timestamp, as `setDate` does.
    void setDateFromUnix(double timestamp);

    /// By the parameters that were set, or by the library's table of leap seconds if none were.
    double gpsTimeToUnix(const gpsTime_t& time) const;
    /// Seconds into the week that was set, converted as by `gpsTimeToUnix`.
    double gpsWeekSecondsToUnix(double seconds) const;
    /// A time of day on the date that was set.
    double timeOfDayToUnix(const timeOfDay_t& timeOfDay) const;

    /// A Unix timestamp that the context stores for the caller; 0.0 at first. No conversion uses
    /// it.
    double defaultTimestamp() const;
    void setDefaultTimestamp(double timestamp);

private:
    struct state_t;

    state_t* m_state;
};

} // namespace kalo
