#include "tools/time/dating.h"

#include <cmath>
#include <tuple>

#include "tools/time/calendarDate.h"

namespace {

constexpr double secondsPerHour = 3600;
constexpr double secondsPerDay = 86400;
constexpr double noon = secondsPerDay / 2;
constexpr double rolloverSpan = 1024 * 7 * secondsPerDay;
constexpr double gpsEpoch =
    315964800; // 1980-01-06, an earlier stamp comes from a clock that is not set

// A second from 60 to below 61 is in range, as in a leap second.
bool isInRange(const kalo::timeOfDay_t& time) {
    return time.hour < 24 && time.minute < 60 && time.second >= 0 && time.second < 61;
}

// As the library computes it: whole seconds add up exactly, the fraction comes last.
double timestampOn(double dayBegin, const kalo::timeOfDay_t& time) {
    const double whole = std::trunc(time.second);
    return dayBegin + time.hour * 3600.0 + time.minute * 60.0 + whole + (time.second - whole);
}

// Names all members, so that none is forgotten.
auto membersOf(const datingState_t& state) {
    const auto& [isDated, reference, isFromOption, referenceStamp] = state;
    return std::tie(isDated, reference, isFromOption, referenceStamp);
}

} // namespace

bool operator==(const datingState_t& a, const datingState_t& b) {
    return membersOf(a) == membersOf(b);
}

dating_t::dating_t(const datingOptions_t& options) : m_options(options) {
    if (options.date) {
        turnTo(*options.date);
        m_state.reference = m_dayBegin + noon;
    } else if (options.begin) {
        m_state.reference = options.begin;
    }
    m_state.isDated = m_state.reference.has_value();
    m_state.isFromOption = m_state.isDated;
}

std::optional<instant_t> dating_t::date(const timeClue_t& clue) {
    const bool hasTime = clue.hasTime && isInRange(clue.time.time);
    const bool hasOwnDate = clue.hasDate && !clue.isVoid;
    if (hasOwnDate && isInCalendar(clue.date)) {
        return dateByOwn(clue, hasTime);
    }
    if (hasOwnDate && clue.date.year > lastYear) {
        return {};
    }
    if (!hasTime && !clue.hasDate) {
        return {};
    }
    const dayRule_t rule = follow(clue, hasTime);
    if (!hasTime) {
        return {};
    }
    if (!m_state.reference) {
        ++m_undated;
        return {};
    }
    const double timestamp = nearest(clue.time.time, *m_state.reference);
    if (!isInCalendar(m_day)) {
        return {};
    }
    setReference(placeInTime(timestamp, clue.time.time.second), clue);
    return instant_t{m_day, clue.time, timestamp, rule};
}

std::optional<instant_t> dating_t::dateByOwn(const timeClue_t& clue, bool hasTime) {
    m_state.isDated = true;
    const std::optional<double> before = m_state.reference;
    turnTo(clue.date);
    const double sentBegin = m_dayBegin;
    turnToRollover(clue, hasTime ? timestampOn(0, clue.time.time) : noon);
    if (!isInCalendar(m_day)) {
        return {};
    }
    if (!hasTime) {
        // A date alone moves the reference to another day, but not within its day.
        if (!before || *before < m_dayBegin || *before >= m_dayBegin + secondsPerDay) {
            setReference(m_dayBegin + noon, clue);
        }
        return {};
    }
    const double timestamp = timestampOn(m_dayBegin, clue.time.time);
    setReference(placeInTime(timestamp, clue.time.time.second), clue);
    return instant_t{m_day, clue.time, timestamp,
                     m_dayBegin == sentBegin ? dayRule_t::own : dayRule_t::rollover};
}

// Moves the day of a record's own date forward: by the multiple of 1024 weeks that its stamp shows,
// then by the least multiple that brings it to the first possible day.
void dating_t::turnToRollover(const timeClue_t& clue, double secondOfDay) {
    if (clue.hasStamp) {
        const double late = clue.stamp - (m_dayBegin + secondOfDay);
        const double count = std::round(late / rolloverSpan);
        const bool isRollover =
            count >= 1 && std::fabs(late - count * rolloverSpan) <= secondsPerDay;
        m_farFromStamp += std::fabs(late) > secondsPerDay ? 1 : 0;
        m_rolledOver += isRollover ? 1 : 0;
        if (isRollover) {
            turnTo(m_dayBegin + count * rolloverSpan);
        }
    }
    if (m_options.notBefore) {
        const double first = kalo::dateTime_t(*m_options.notBefore, {}).toTimestamp();
        if (m_dayBegin < first) {
            turnTo(m_dayBegin + std::ceil((first - m_dayBegin) / rolloverSpan) * rolloverSpan);
        }
    }
}

// For a record without a usable date: moves the reference to the time of the line, and returns
// where it comes from.
dayRule_t dating_t::follow(const timeClue_t& clue, bool hasTime) {
    const auto isWithinAnHour = [&](double reference) {
        return hasTime &&
               std::fabs(nearest(clue.time.time, reference) - reference) <= secondsPerHour;
    };
    const bool mayDate = clue.hasStamp && clue.stamp >= gpsEpoch;
    if (!m_state.isDated && mayDate && (!clue.isBareStamp || isWithinAnHour(clue.stamp))) {
        setReference(clue.stamp, clue);
        return dayRule_t::stamp;
    }
    if (m_state.reference && m_state.referenceStamp && clue.hasStamp) {
        // The clock of the stamps may be wrong. But if it was set in between, or if a stamp is a
        // counter, the reference does not follow it.
        const double moved = *m_state.reference + (clue.stamp - *m_state.referenceStamp);
        if (isWithinAnHour(moved)) {
            m_state.reference = moved;
        }
    } else if (!m_state.reference && clue.hasDate && isInCalendar(clue.date)) {
        turnTo(clue.date);
        setReference(m_dayBegin + noon, clue);
        return dayRule_t::isVoid;
    }
    return m_state.isFromOption ? dayRule_t::option : dayRule_t::near;
}

void dating_t::setReference(double place, const timeClue_t& clue) {
    m_state.reference = place;
    m_state.isFromOption = false;
    m_state.referenceStamp = clue.hasStamp ? std::optional(clue.stamp) : std::nullopt;
}

// The instant with this time of day that is nearest to the reference; the earlier of two. Its day
// becomes the current one.
double dating_t::nearest(const kalo::timeOfDay_t& time, double reference) {
    // A leap second belongs to the day of its minute.
    kalo::timeOfDay_t place = time;
    place.second -= place.second >= 60 ? 1 : 0;
    turnTo(reference);
    const double distance = timestampOn(m_dayBegin, place) - reference;
    if (distance >= secondsPerDay / 2) {
        turnTo(m_dayBegin - secondsPerDay);
    } else if (distance < -secondsPerDay / 2) {
        turnTo(m_dayBegin + secondsPerDay);
    }
    return timestampOn(m_dayBegin, time);
}

// Both change the current day. Nothing is computed if it stays the same.
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
