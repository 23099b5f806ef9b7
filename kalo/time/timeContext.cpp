#include "kalo/time/timeContext.h"

namespace kalo {

namespace {

// What is known.
constexpr std::uint32_t hasGps2Utc = 1;
constexpr std::uint32_t hasDate = 2;
constexpr std::uint32_t hasGpsWeek = 4;

} // namespace

struct timeContext_t::state_t {
    std::uint32_t known = 0;
    gps2utc_t gps2utc;
    date_t date;
    std::uint32_t gpsWeek = 0;
    double defaultTimestamp = 0;
};

timeContext_t::timeContext_t() : m_state(new state_t) {}

timeContext_t::~timeContext_t() { delete m_state; }

void timeContext_t::setGps2Utc(const gps2utc_t& parameters) {
    m_state->gps2utc = parameters;
    m_state->known |= hasGps2Utc;
}

void timeContext_t::setDate(const date_t& date) {
    m_state->date = date;
    m_state->known |= hasDate;
}

void timeContext_t::setGpsWeek(unsigned week) {
    m_state->gpsWeek = week;
    m_state->known |= hasGpsWeek;
}

void timeContext_t::setDateFromUnix(double timestamp) { setDate(dateTime_t(timestamp).date); }

double timeContext_t::gpsTimeToUnix(const gpsTime_t& time) const {
    return (m_state->known & hasGps2Utc) != 0 ? time.toUnix(m_state->gps2utc) : time.toUnix();
}

double timeContext_t::gpsWeekSecondsToUnix(double seconds) const {
    if ((m_state->known & hasGpsWeek) == 0) {
        return 0.0;
    }
    return gpsTimeToUnix(gpsTime_t(m_state->gpsWeek, seconds));
}

double timeContext_t::timeOfDayToUnix(const timeOfDay_t& timeOfDay) const {
    if ((m_state->known & hasDate) == 0) {
        return 0.0;
    }
    return dateTime_t(m_state->date, timeOfDay).toTimestamp();
}

double timeContext_t::defaultTimestamp() const { return m_state->defaultTimestamp; }

void timeContext_t::setDefaultTimestamp(double timestamp) { m_state->defaultTimestamp = timestamp; }

} // namespace kalo
