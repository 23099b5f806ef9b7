// The track of a vessel: one position for each instant, and the distance, time and area that they
// cover.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tools/record/measurements.h"

/// When something was sent.
struct sentAt_t {
    std::optional<double> time; ///< Unix seconds; empty until a date is known
    double timeOfDay = -1;      ///< seconds; negative if there is no time of day
};

/// By its own time; a record without one has that of its reception.
sentAt_t sentAtOf(const record_t& record);

/// Seconds from one to the other; without dates by their times of day, at most half a day back.
std::optional<double> timeBetween(const sentAt_t& from, const sentAt_t& to);

/// A position, and what else was measured in its epoch.
struct fix_t : sentAt_t {
    std::uint64_t line = 0; ///< of the record with the position
    std::uint64_t offset = 0;
    std::size_t rank = 0;
    measurements_t values; ///< latitude and longitude among them
};

/// Makes fixes from records. An epoch holds the records from the first position of an instant up to
/// the first position of the next instant. Its position is that of the best sentence in it
/// (`positionTypes`).
class epochs_t {
public:
    /// Takes the next record. If that record ends an epoch with a position, returns the fix, which
    /// is valid until the next call.
    const fix_t* add(const record_t& record, const measurements_t& measured);
    /// The fix of the last epoch, at the end of an input.
    const fix_t* finish();

private:
    bool m_isOpen = false;
    fix_t m_open;
    fix_t m_ended;
};

constexpr double earthRadius = 6371008.8; ///< metres; the mean one of the WGS 84 ellipsoid

struct place_t {
    double latitude = 0; ///< radians
    double longitude = 0;
};

inline place_t placeOf(const fix_t& fix) {
    return {fix.values[quantity_t::latitude], fix.values[quantity_t::longitude]};
}

/// The distance between two places in metres, on a sphere.
double distanceBetween(const place_t& from, const place_t& to);

/// In metres.
struct offset_t {
    double east;
    double north;
};
/// From one place to another in a plane: near enough over some kilometres.
offset_t offsetBetween(const place_t& from, const place_t& to);

/// From one fix to the next.
struct step_t {
    double distance;
    std::optional<double> duration; ///< as by `timeBetween`; negative if time goes backwards

    /// Whether it needs more than this speed. Shorter times count as a second, since times are
    /// rounded. Without a time nobody knows.
    bool isJump(double maxSpeed) const;
};
step_t stepBetween(const fix_t& from, const fix_t& to);

/// The smallest box around positions; it crosses the date line if that makes it smaller.
class positionBox_t {
public:
    void add(double latitude, double longitude);

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

/// Distance, duration and jumps of a series of fixes.
class voyage_t {
public:
    explicit voyage_t(double maxSpeed) : m_maxSpeed(maxSpeed) {}

    void add(const fix_t& fix);
    /// The next fix starts a new track, which is not joined to the last one.
    void interrupt() { m_last.reset(); }

    std::uint64_t fixes() const { return m_fixes; }
    const positionBox_t& box() const { return m_box; }
    double distance() const { return m_distance; }
    /// Seconds that this distance took, as far as its steps have times that go forward.
    double duration() const { return m_duration; }
    /// In m/s, over the steps that `duration` counts; empty if there are none.
    std::optional<double> meanSpeed() const;
    /// Steps that would need more than the greatest speed; they do not count in the distance.
    std::uint64_t jumps() const { return m_jumps; }

private:
    double m_maxSpeed;
    std::uint64_t m_fixes = 0;
    std::uint64_t m_jumps = 0;
    positionBox_t m_box;
    double m_distance = 0;
    double m_duration = 0;
    double m_timedDistance = 0; // in this time
    std::optional<fix_t> m_last;
};
