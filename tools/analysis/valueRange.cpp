#include "tools/analysis/valueRange.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

void valueRange_t::add(double value) {
    m_least = m_count == 0 ? value : std::min(m_least, value);
    m_greatest = m_count == 0 ? value : std::max(m_greatest, value);
    ++m_count;
    // The bits of a double: sign, 11 of the exponent, 52 of the fraction.
    std::uint64_t bits = 0;
    static_assert(std::numeric_limits<double>::is_iec559 && sizeof bits == sizeof value);
    std::memcpy(&bits, &value, sizeof bits);
    constexpr int fractionBits = 52;
    constexpr int bias = 1022; // as `ldexp` counts, with mantissas from 0.5 on
    const int octave = static_cast<int>(bits >> fractionBits & 0x7FF) - bias - lowestExponent;
    if (octave < 0) {
        ++m_nearZero;
        return;
    }
    side_t& side = value < 0 ? m_negative : m_positive;
    auto& bins = side[static_cast<std::size_t>(std::min(octave, octaveCount - 1))];
    if (bins == nullptr) {
        bins = std::make_unique<octave_t>();
    }
    const auto bin =
        static_cast<std::size_t>(bits >> (fractionBits - bitsOfBin) & (binsOfOctave - 1));
    ++(*bins)[octave < octaveCount ? bin : binsOfOctave - 1];
}

double valueRange_t::median() const {
    const std::uint64_t upper = m_count / 2;
    return m_count % 2 == 0 && m_count > 0 ? (valueAt(upper - 1) + valueAt(upper)) / 2
                                           : valueAt(upper);
}

// The value at this position of the sorted ones.
double valueRange_t::valueAt(std::uint64_t position) const {
    std::uint64_t left = position;
    const auto isInBin = [&](std::uint64_t count) {
        const bool isIn = left < count;
        left -= isIn ? 0 : count;
        return isIn;
    };
    const auto middle = [](std::size_t octave, std::size_t bin) {
        const double mantissa = 0.5 + (static_cast<double>(bin) + 0.5) / (2 * binsOfOctave);
        return std::ldexp(mantissa, static_cast<int>(octave) + lowestExponent);
    };
    double found = 0;
    const auto isInOctave = [&](const side_t& side, std::size_t octave, bool isReversed) {
        for (std::size_t i = 0; side[octave] != nullptr && i < binsOfOctave; ++i) {
            const std::size_t bin = isReversed ? binsOfOctave - 1 - i : i;
            if (isInBin((*side[octave])[bin])) {
                found = isReversed ? -middle(octave, bin) : middle(octave, bin);
                return true;
            }
        }
        return false;
    };
    bool isFound = false;
    for (std::size_t i = octaveCount; !isFound && i-- > 0;) {
        isFound = isInOctave(m_negative, i, true);
    }
    isFound = isFound || isInBin(m_nearZero);
    for (std::size_t i = 0; !isFound && i < octaveCount; ++i) {
        isFound = isInOctave(m_positive, i, false);
    }
    return std::clamp(found, m_least, m_greatest);
}
