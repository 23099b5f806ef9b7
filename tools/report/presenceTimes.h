// When the records of a sender came, in bounded memory: how many came in each interval, and the
// longest gaps.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "tools/report/intervals.h"

/// Two times in Unix seconds.
struct gap_t {
    double begin = 0;
    double end = 0;

    double length() const { return end - begin; }
};

class presenceTimes_t {
public:
    static constexpr std::size_t mostRuns = 200;
    static constexpr std::size_t mostGaps = 64;

    void add(double time);
    /// Adds the times of another input.
    void append(const presenceTimes_t& later);

    std::uint64_t count() const { return m_runs.count(); }
    /// In the order in which they came.
    double first() const { return m_runs.first(); }
    double last() const { return *m_last; }

    /// In the order of time; they do not overlap. A run may hold gaps.
    std::vector<interval_t> runs() const;
    /// The longest gaps: steps of more than twice the usual one, without what other records fill.
    std::vector<gap_t> gaps() const;
    /// Seconds; at most one in twenty steps to a later time is longer. 0 if there are no steps.
    double usualStep() const;

private:
    // Steps are counted by their length: four lengths in each power of two of a second.
    static constexpr int leastExponent = -10;
    static constexpr int greatestExponent = 40;
    static constexpr int partsOfPower = 4;
    static constexpr std::size_t lengthCount =
        std::size_t{greatestExponent - leastExponent} * partsOfPower;

    void addStep(double time);
    void keep(const gap_t& gap);

    std::optional<double> m_last;
    intervals_t m_runs{mostRuns};
    std::array<std::uint32_t, lengthCount> m_steps{};
    std::vector<gap_t> m_longest;
};
