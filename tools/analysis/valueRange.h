// The least, the greatest and the median of values, in memory that does not grow with their number.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

class valueRange_t {
public:
    void add(double value);

    std::uint64_t count() const { return m_count; }
    double least() const { return m_least; }
    double greatest() const { return m_greatest; }
    /// The middle value; of an even number the mean of the two in the middle. Values are counted in
    /// bins, so each may be off by 0.2 %, or by 0.000001 if that is more. Values beyond 16 million
    /// are in the last bin.
    double median() const;

private:
    double valueAt(std::uint64_t position) const;

    static constexpr int bitsOfBin = 8; // the first ones of the fraction
    static constexpr std::size_t binsOfOctave = std::size_t{1} << bitsOfBin;
    static constexpr int lowestExponent = -20;
    static constexpr int octaveCount = 44; // up to 2^24; greater values count in the last bin

    using octave_t = std::array<std::uint64_t, binsOfOctave>;
    using side_t = std::array<std::unique_ptr<octave_t>, octaveCount>;

    std::uint64_t m_count = 0;
    std::uint64_t m_nearZero = 0;
    double m_least = 0;
    double m_greatest = 0;
    side_t m_negative;
    side_t m_positive;
};
