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

// As the library computes it: whole seconds add up exactly, the fraction comes last.
double timestampOn(double dayBegin, const kalo::timeOfDay_t& time) {
    const double whole = std::trunc(time.second);
    return dayBegin + time.hour * 3600.0 + time.minute * 60.0 + whole + (time.second - whole);
}

} // namespace

dating_t::dating_t(const std::optional<kalo::date_t>& date) : m_isDated(date.has_value()) {
    if (date) {
        turnTo(*date);
        m_reference = noon();
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
        turnTo(clue.date);
        setReference(timestampOn(m_dayBegin, clue.time.time), clue);
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
    const bool hadReference = m_reference.has_value();
    if (hadReference) {
        turnTo(*m_reference);
    }
    const double before = m_dayBegin;
    turnTo(date);
    if (!hadReference || m_dayBegin != before) {
        setReference(noon(), clue);
    }
}

void dating_t::setReference(double timestamp, const timeClue_t& clue) {
    m_reference = timestamp;
    m_referenceStamp =
        clue.hasStamp && clue.stamp >= gpsEpoch ? std::optional(clue.stamp) : std::nullopt;
}

// The instant at the time of day that lies nearest to the reference; of two the earlier.
std::optional<instant_t> dating_t::nearest(const sentTime_t& time) {
    // A leap second lies on the day that its minute lies on.
    kalo::timeOfDay_t place = time.time;
    place.second -= place.second >= 60 ? 1 : 0;
    turnTo(*m_reference);
    const double distance = timestampOn(m_dayBegin, place) - *m_reference;
    if (distance >= secondsPerDay / 2) {
        turnTo(m_dayBegin - secondsPerDay);
    } else if (distance < -secondsPerDay / 2) {
        turnTo(m_dayBegin + secondsPerDay);
    }
    if (!isInCalendar(m_day)) {
        return {};
    }
    return instant_t{m_day, time, timestampOn(m_dayBegin, time.time)};
}

double dating_t::noon() const { return m_dayBegin + secondsPerDay / 2; }

// Both make another day the current one; as long as it stays the same nothing is computed.
void dating_t::turnTo(double timestamp) {
    if (!(timestamp >= m_dayBegin && timestamp < m_dayBegin + secondsPerDay)) {
        m_day = kalo::dateTime_t(timestamp).date;
        m_dayBegin = kalo::dateTime_t(m_day, {}).toTimestamp();
    }
}

void dating_t::turnTo(const kalo::date_t& date) {
    if (date.day != m_day.day || date.month != m_day.month || date.year != m_day.year) {
        m_day = date;
        m_dayBegin = kalo::dateTime_t(m_day, {}).toTimestamp();
    }
}
