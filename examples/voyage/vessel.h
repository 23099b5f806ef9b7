// The survey vessel of the sample recordings: where it is, where it heads and what surrounds it at
// one second of its voyage. Integers only, so that every machine computes the same voyage.

#pragma once

#include <cstdint>

namespace voyage {

using number_t = std::int64_t;

/// splitmix64: the generator behind every random choice.
class random_t {
public:
    explicit random_t(std::uint64_t seed) : m_state(seed) {}
    std::uint64_t next();
    /// 0 to span - 1
    number_t below(number_t span);

private:
    std::uint64_t m_state;
};

constexpr number_t unity = 10000;      ///< what sine and cosine call 1
constexpr number_t fullCircle = 36000; ///< angles are hundredths of a degree
constexpr number_t secondsOfDay = 86400;
constexpr number_t degree = 60000000; ///< of a position, 1e-6 minutes

number_t sine(number_t angle);
number_t cosine(number_t angle);
number_t squareRoot(number_t square);
/// Direction of a vector, clockwise from `ahead`; 0 to fullCircle - 1.
number_t direction(number_t ahead, number_t starboard);
/// Brings an angle into 0 to fullCircle - 1.
number_t wrap(number_t angle);
/// A sine wave over time: between -amplitude and amplitude.
number_t wave(number_t seconds, number_t period, number_t amplitude);

struct day_t {
    number_t year;
    number_t month;
    number_t day;
};

/// Days since 1970-01-01, and back.
number_t daysOf(const day_t& date);
day_t dayOf(number_t days);

struct vector_t {
    number_t north; ///< mm
    number_t east;  ///< mm
};

/// Millimetres as units of latitude, and of longitude at the survey's latitude.
number_t unitsNorth(number_t millimetres);
number_t unitsEast(number_t millimetres);

struct vessel_t {
    vessel_t(std::uint64_t voyageSeed, number_t start);
    /// One second of vessel time.
    void step();
    /// A random number from 0 to span - 1 that depends on seed, epoch and channel alone: a further
    /// instrument does not change the values of the others.
    number_t jitter(number_t channel, number_t span) const;
    /// Position in the survey's grid, from its origin.
    vector_t grid() const;

    std::uint64_t seed;
    number_t clock;             ///< seconds since 1970
    number_t epoch = 0;         ///< seconds since the start
    number_t latitude;          ///< 1e-6 minutes, north positive
    number_t longitude;         ///< 1e-6 minutes, east positive
    number_t course;            ///< over ground
    number_t heading = 0;       ///< true
    number_t rateOfTurn = 0;    ///< hundredths of a degree a minute, starboard positive
    number_t speed = 0;         ///< over ground, mm/s
    number_t depth = 0;         ///< below the transducer, cm
    number_t roll = 0;          ///< hundredths of a degree
    number_t pitch = 0;         ///< hundredths of a degree
    number_t windDirection = 0; ///< true, where it comes from
    number_t windSpeed = 0;     ///< true, mm/s

private:
    void sense();
};

} // namespace voyage
