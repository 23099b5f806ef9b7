#include "tools/time/dating.h"

#include <cmath>

#include "tools/time/calendarDate.h"

namespace {

constexpr double secondsPerDay = 86400;
constexpr double gpsEpoch = 315964800; // 1980-01-06, before which no clock on board was right

// A second from 60 on is in range while a leap second lasts.
bool isInRange(const kalo::timeOfDay_t& time) {
    return time.hour < 24 && time.minute < 60 && time.second >= 0 && time.second < 61;
}

double timestampOf(const kalo::date_t& date, const kalo::timeOfDay_t& time) {
    return kalo::dateTime_t(date, time).toTimestamp();
}

double noonOf(const kalo::date_t& date) { return timestampOf(date, {12, 0, 0}); }

kalo::date_t dayOf(double timestamp) { return kalo::dateTime_t(timestamp).date; }

bool isSameDay(const kalo::date_t& a, const kalo::date_t& b) {
    return a.year == b.year && a.month == b.month && a.day == b.day;
}

} // namespace

dating_t::dating_t(const std::optional<kalo::date_t>& date) : m_isDated(date.has_value()) {
    if (date) {
        m_reference = noonOf(*date);
    }
}

std::optional<instant_t> dating_t::date(const timeClue_t& clue) {
    const bool hasTime = clue.hasTime && isInRange(clue.time.time);
    if (clue.hasDate && !clue.isVoid && isInCalendar(clue.date)) {
        m_isDated = true;
        if (!hasTime) {
            setDay(clue.date, clue);
            return {};
        }
        setReference(timestampOf(clue.date, clue.time.time), clue);
        return instant_t{clue.date, clue.time, *m_reference};
    }
    if (!hasTime && !clue.hasDate) {
        return {};
    }
    follow(clue);
    if (!hasTime) {
        return {};
    }
    if (!m_reference) {
        ++m_undated;
        return {};
    }
    const std::optional<instant_t> instant = nearest(clue.time);
    if (instant) {
        setReference(instant->timestamp, clue);
    }
    return instant;
}

// Brings the reference up to the line of a record without a date that counts.
void dating_t::follow(const timeClue_t& clue) {
    const bool isStamped = clue.hasStamp && clue.stamp >= gpsEpoch;
    if (!m_isDated && isStamped) {
        m_reference = clue.stamp;
        m_referenceStamp = clue.stamp;
    } else if (m_reference && m_referenceStamp && isStamped) {
        *m_reference += clue.stamp - *m_referenceStamp;
        m_referenceStamp = clue.stamp;
    } else if (!m_reference && clue.hasDate && isInCalendar(clue.date)) {
        setDay(clue.date, clue);
    }
}

// A date without a time moves the reference to another day, but not within its day.
void dating_t::setDay(const kalo::date_t& date, const timeClue_t& clue) {
    if (!m_reference || !isSameDay(dayOf(*m_reference), date)) {
        setReference(noonOf(date), clue);
    }
}

void dating_t::setReference(double timestamp, const timeClue_t& clue) {
    m_reference = timestamp;
    m_referenceStamp =
        clue.hasStamp && clue.stamp >= gpsEpoch ? std::optional(clue.stamp) : std::nullopt;
}

// The instant at the time of day that lies nearest to the reference; of two the earlier.
std::optional<instant_t> dating_t::nearest(const sentTime_t& time) const {
    // A leap second lies on the day that its minute lies on.
    kalo::timeOfDay_t place = time.time;
    place.second -= place.second >= 60 ? 1 : 0;
    const double noon = noonOf(dayOf(*m_reference));
    kalo::date_t best;
    double least = INFINITY;
    for (const double day : {noon - secondsPerDay, noon, noon + secondsPerDay}) {
        const kalo::date_t date = dayOf(day);
        const double distance = std::fabs(timestampOf(date, place) - *m_reference);
        if (distance < least) {
            least = distance;
            best = date;
        }
    }
    if (!isInCalendar(best)) {
        return {};
    }
    return instant_t{best, time, timestampOf(best, time.time)};
}
