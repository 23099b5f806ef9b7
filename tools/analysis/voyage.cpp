#include "tools/analysis/voyage.h"

#include <algorithm>
#include <cmath>

#include "tools/record/degrees.h"

namespace {

constexpr double secondsOfDay = 86400;
// Some receivers give the sentences of an epoch with different digits.
constexpr double sameInstant = 0.01;

double timeOfDayOf(const record_t& record) {
    if (!record.clue.hasTime) {
        return -1;
    }
    const kalo::timeOfDay_t& time = record.clue.time.time;
    constexpr double secondsOfHour = 3600;
    constexpr double secondsOfMinute = 60;
    return time.hour * secondsOfHour + time.minute * secondsOfMinute + time.second;
}

} // namespace

sentAt_t sentAtOf(const record_t& record) {
    sentAt_t at{{}, timeOfDayOf(record)};
    if (record.instant) {
        at.time = record.instant->timestamp;
    } else if (at.timeOfDay < 0 && record.clue.hasStamp) {
        at.time = record.clue.stamp;
    }
    return at;
}

std::optional<double> timeBetween(const sentAt_t& from, const sentAt_t& to) {
    if (from.time && to.time) {
        return *to.time - *from.time;
    }
    if (from.timeOfDay < 0 || to.timeOfDay < 0) {
        return {};
    }
    const double difference = to.timeOfDay - from.timeOfDay;
    return difference < -secondsOfDay / 2 ? difference + secondsOfDay : difference;
}

const fix_t* epochs_t::add(const record_t& record, const measurements_t& measured) {
    const std::size_t rank = measured.positionRank();
    const bool isPosition = rank < std::size(positionTypes) && record.fault == fault_t::none;
    const fix_t* ended = nullptr;
    if (isPosition) {
        const auto [time, timeOfDay] = sentAtOf(record);
        // A position without a time belongs to the epoch, unless its type has come before.
        const bool isNext = timeOfDay < 0 ? rank == m_open.rank
                            : time && m_open.time
                                ? std::fabs(*time - *m_open.time) > sameInstant
                                : std::fabs(timeOfDay - m_open.timeOfDay) > sameInstant;
        if (m_isOpen && !isNext && !m_open.time) {
            m_open.time = time; // a later sentence of the epoch may have a date
        }
        if (!m_isOpen || isNext) {
            ended = finish();
            m_isOpen = true;
            m_open.time = time;
            m_open.timeOfDay = timeOfDay;
            m_open.rank = std::size(positionTypes);
            m_open.values.clear();
        }
    }
    if (!m_isOpen) {
        return ended;
    }
    const bool isBest = isPosition && measured.hasPosition() && rank < m_open.rank;
    if (isBest) {
        m_open.rank = rank;
        m_open.line = record.line;
        m_open.offset = record.offset;
    }
    if (isPosition && measured.isVoid()) {
        return ended;
    }
    measured.forEach([&](quantity_t quantity, double value) {
        if (isBest || !m_open.values.has(quantity)) {
            m_open.values.set(quantity, value);
        }
    });
    return ended;
}

const fix_t* epochs_t::finish() {
    const bool hasFix = m_isOpen && m_open.rank < std::size(positionTypes);
    m_isOpen = false;
    m_ended = m_open;
    return hasFix ? &m_ended : nullptr;
}

double distanceBetween(const place_t& from, const place_t& to) {
    const double north = std::sin((to.latitude - from.latitude) / 2);
    const double east = std::sin((to.longitude - from.longitude) / 2);
    const double square =
        north * north + std::cos(from.latitude) * std::cos(to.latitude) * east * east;
    return 2 * earthRadius * std::asin(std::sqrt(std::min(1.0, square)));
}

bool step_t::isJump(double maxSpeed) const {
    return duration && distance > maxSpeed * std::max(std::fabs(*duration), 1.0);
}

offset_t offsetBetween(const place_t& from, const place_t& to) {
    const double eastward = std::remainder(to.longitude - from.longitude, 2 * halfTurn);
    return {eastward * std::cos(from.latitude) * earthRadius,
            (to.latitude - from.latitude) * earthRadius};
}

step_t stepBetween(const fix_t& from, const fix_t& to) {
    return {distanceBetween(placeOf(from), placeOf(to)), timeBetween(from, to)};
}

void positionBox_t::add(double latitude, double longitude) {
    const double from0 = longitude < 0 ? longitude + 2 * halfTurn : longitude;
    const auto widen = [this](double value, double& least, double& greatest) {
        least = m_isEmpty ? value : std::min(least, value);
        greatest = m_isEmpty ? value : std::max(greatest, value);
    };
    widen(latitude, m_south, m_north);
    widen(longitude, m_west, m_east);
    widen(from0, m_westFrom0, m_eastFrom0);
    m_isEmpty = false;
}

double positionBox_t::west() const {
    return !isOverDateLine()        ? m_west
           : m_westFrom0 > halfTurn ? m_westFrom0 - 2 * halfTurn
                                    : m_westFrom0;
}

double positionBox_t::east() const {
    return !isOverDateLine()        ? m_east
           : m_eastFrom0 > halfTurn ? m_eastFrom0 - 2 * halfTurn
                                    : m_eastFrom0;
}

void voyage_t::add(const fix_t& fix) {
    ++m_fixes;
    m_box.add(fix.values[quantity_t::latitude], fix.values[quantity_t::longitude]);
    if (m_last) {
        const step_t step = stepBetween(*m_last, fix);
        if (step.isJump(m_maxSpeed)) {
            ++m_jumps;
        } else {
            m_distance += step.distance;
            if (step.duration && *step.duration > 0) {
                m_duration += *step.duration;
                m_timedDistance += step.distance;
            }
        }
    }
    m_last = fix;
}

std::optional<double> voyage_t::meanSpeed() const {
    return m_duration > 0 ? std::optional(m_timedDistance / m_duration) : std::nullopt;
}
