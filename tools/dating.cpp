#include "tools/dating.h"

#include <cmath>

#include "tools/calendarDate.h"

namespace {

constexpr double secondsPerDay = 86400;

// A second from 60 on is in range while a leap second lasts.
bool isInRange(const kalo::timeOfDay_t& time) {
    return time.hour < 24 && time.minute < 60 && time.second >= 0 && time.second < 61;
}

double noonOf(const kalo::date_t& date) { return kalo::dateTime_t(date, {12, 0, 0}).toTimestamp(); }

} // namespace

dating_t::dating_t(const std::optional<kalo::date_t>& date) : m_hasUserDate(date.has_value()) {
    if (date) {
        m_reference = noonOf(*date);
    }
}

std::optional<instant_t> dating_t::date(const timeClue_t& clue) {
    if (!isInRange(clue.time.time)) {
        return {};
    }
    instant_t instant;
    if (clue.date && !clue.isVoid && isInCalendar(*clue.date)) {
        instant = onDay(*clue.date, clue.time);
        m_dated = true;
    } else if (findReference(clue)) {
        instant = nearest(clue.time);
    } else {
        ++m_undated;
        return {};
    }
    m_reference = instant.timestamp;
    m_referenceStamp = clue.stamp;
    return instant;
}

// Brings the reference up to the line of the clue; false while there is none.
bool dating_t::findReference(const timeClue_t& clue) {
    if (!m_dated && !m_hasUserDate) {
        if (clue.stamp) {
            m_reference = clue.stamp;
            return true;
        }
        if (clue.date && isInCalendar(*clue.date)) {
            m_reference = noonOf(*clue.date);
            return true;
        }
    }
    if (m_reference && clue.stamp && m_referenceStamp) {
        *m_reference += *clue.stamp - *m_referenceStamp;
    }
    return m_reference.has_value();
}

// The instant at the time of day that lies nearest to the reference; of two the earlier.
instant_t dating_t::nearest(const sentTime_t& time) {
    const double noon = noonOf(kalo::dateTime_t(*m_reference).date);
    instant_t best = onDay(kalo::dateTime_t(noon - secondsPerDay).date, time);
    for (const double day : {noon, noon + secondsPerDay}) {
        const instant_t later = onDay(kalo::dateTime_t(day).date, time);
        if (std::fabs(later.timestamp - *m_reference) < std::fabs(best.timestamp - *m_reference)) {
            best = later;
        }
    }
    return best;
}

instant_t dating_t::onDay(const kalo::date_t& date, const sentTime_t& time) {
    m_context.setDate(date);
    return {date, time, m_context.timeOfDayToUnix(time.time)};
}
