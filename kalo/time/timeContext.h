// Completes partial times: what the records of one input have told about date, GPS week and leap
// seconds turns a time of day or seconds into the week into a Unix timestamp.
#pragma once

#include "kalo/export.h"
#include "kalo/time/dateTime.h"
#include "kalo/time/gpsTime.h"

namespace kalo {

/// What is known about the time of one input stream. A caller keeps one per stream and sets what
/// records bring; an item once set stays known, a later value replaces it. The context has no rule
/// of its own at midnight or at the end of a week: keeping date and week current is the caller's
/// work. It is neither copied nor moved, and one thread at a time may use it.
///
/// Caveat: a conversion that lacks its item gives 0.0, which is also the Unix epoch.
class KALO_EXPORT timeContext_t {
public:
    timeContext_t();
    timeContext_t(const timeContext_t&) = delete;
    timeContext_t& operator=(const timeContext_t&) = delete;
    ~timeContext_t();

    void setGps2Utc(const gps2utc_t& parameters);
    void setDate(const date_t& date);
    void setGpsWeek(unsigned week);
    /// The UTC date of a Unix timestamp.
    void setDateFromUnix(double timestamp);

    /// With the parameters that were set, or by the library's table of leap seconds.
    double gpsTimeToUnix(const gpsTime_t& time) const;
    /// Seconds into the stored week, converted as above.
    double gpsWeekSecondsToUnix(double seconds) const;
    /// On the stored date.
    double timeOfDayToUnix(const timeOfDay_t& timeOfDay) const;

    /// A Unix timestamp kept for the caller, 0.0 at first; no conversion reads it.
    double defaultTimestamp() const;
    void setDefaultTimestamp(double timestamp);

private:
    struct state_t;

    state_t* m_state;
};

} // namespace kalo
