// Values over time in bounded memory: of each interval the least and the greatest stay.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// Consecutive values. The times are Unix seconds.
struct interval_t {
    double first = 0;
    double last = 0;
    double leastTime = 0;
    double least = 0;
    double greatestTime = 0;
    double greatest = 0;
    std::uint64_t count = 0;
};

class intervals_t {
public:
    /// At most `most` intervals are kept, and at least half as many of enough values.
    explicit intervals_t(std::size_t most) : m_most(most) {}

    void add(double time, double value);
    /// Adds the values of another series.
    void append(const intervals_t& later);

    const std::vector<interval_t>& all() const { return m_all; }
    std::uint64_t count() const { return m_count; }
    /// In the order in which they came; there must be a value.
    double first() const { return m_all.front().first; }
    double last() const { return m_all.back().last; }
    /// The greatest number of values in an interval; 1 as long as every value is kept.
    std::uint64_t length() const { return m_length; }
    /// Whether so many seconds without a value are a gap: more than a minute and more than ten
    /// usual steps, which are the mean, and of few values the median.
    bool isGap(double step) const;

private:
    double usualStep() const;
    void push(const interval_t& interval);
    void thin();

    std::size_t m_most;
    std::uint64_t m_length = 1;
    std::uint64_t m_count = 0;
    std::vector<interval_t> m_all; // in the order in which they came
};
