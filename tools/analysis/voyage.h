// The way of a vessel: one position for each instant, and what they add up to.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tools/record/measurements.h"

/// A position, and what else was measured in its epoch.
struct fix_t {
    std::optional<double> time; ///< Unix seconds; none while the input is not dated
    double timeOfDay = -1;      ///< seconds; negative without
    std::uint64_t line = 0;     ///< of the position, as is the next
    std::uint64_t offset = 0;
    std::size_t rank = 0;
    measurements_t values; ///< latitude and longitude among them
};

/// Makes fixes of records. An epoch is what comes from the first position of an instant to the
/// first of the next one; its position is that of the best sentence (`positionTypes`).
class epochs_t {
public:
    /// Takes the next record. Gives the fix of the epoch that it ends, if that has one; it is valid
    /// until the next call.
    const fix_t* add(const record_t& record, const measurements_t& measured);
    /// The last one, at the end of an input.
    const fix_t* finish();

private:
    bool m_isOpen = false;
    fix_t m_open;
    fix_t m_ended;
};

struct place_t {
    double latitude = 0; ///< radians
    double longitude = 0;
};

inline place_t placeOf(const fix_t& fix) {
    return {fix.values[quantity_t::latitude], fix.values[quantity_t::longitude]};
}

/// Metres on the way from one place to the other, on a sphere.
double distanceBetween(const place_t& from, const place_t& to);

/// A box of positions; over the date line when that makes it smaller.
class positionBox_t {
public:
    void add(double latitude, double longitude);

    bool isEmpty() const { return m_isEmpty; }
    double south() const { return m_south; }
    double north() const { return m_north; }
    double west() const;
    double east() const;

private:
    bool isOverDateLine() const { return m_east - m_west > m_eastFrom0 - m_westFrom0; }

    bool m_isEmpty = true;
    double m_south = 0;
    double m_north = 0;
    double m_west = 0; // of longitudes from -180 to 180 degrees
    double m_east = 0;
    double m_westFrom0 = 0; // of longitudes from 0 to 360 degrees
    double m_eastFrom0 = 0;
};

/// What fixes add up to.
class voyage_t {
public:
    explicit voyage_t(double maxSpeed) : m_maxSpeed(maxSpeed) {}

    void add(const fix_t& fix);
    /// What follows begins elsewhere.
    void interrupt() { m_last.reset(); }

    std::uint64_t fixes() const { return m_fixes; }
    const positionBox_t& box() const { return m_box; }
    double distance() const { return m_distance; }
    /// Seconds in which that way was made.
    double duration() const { return m_duration; }
    /// Steps that would take more than the greatest speed; they are not part of the way.
    std::uint64_t jumps() const { return m_jumps; }

private:
    double m_maxSpeed;
    std::uint64_t m_fixes = 0;
    std::uint64_t m_jumps = 0;
    positionBox_t m_box;
    double m_distance = 0;
    double m_duration = 0;
    std::optional<fix_t> m_last;
};
