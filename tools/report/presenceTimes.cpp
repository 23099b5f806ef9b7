#include "tools/report/presenceTimes.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

constexpr double usualShare = 0.95; // senders that send in bursts have a long step now and then
constexpr double usualStepsOfGap = 2;

bool isLonger(const gap_t& a, const gap_t& b) { return a.length() > b.length(); }

// Adds what of the gap no run fills.
void addFree(std::vector<gap_t>& free, gap_t gap, const std::vector<interval_t>& runs) {
    for (const interval_t& run : runs) {
        const bool spansGap = run.first <= gap.begin && run.last >= gap.end;
        const bool isOutside = run.last <= gap.begin || run.first >= gap.end;
        if (spansGap || isOutside) {
            continue; // the gap is one of this run, or the run is elsewhere
        }
        if (run.first > gap.begin) {
            free.push_back({gap.begin, run.first});
        }
        gap.begin = run.last;
    }
    if (gap.begin < gap.end) {
        free.push_back(gap);
    }
}

} // namespace

void presenceTimes_t::add(double time) {
    addStep(time);
    m_runs.add(time, 0);
}

void presenceTimes_t::append(const presenceTimes_t& later) {
    addStep(later.first());
    m_last = later.m_last;
    m_runs.append(later.m_runs);
    for (std::size_t i = 0; i < lengthCount; ++i) {
        m_steps[i] += later.m_steps[i];
    }
    for (const gap_t& gap : later.m_longest) {
        keep(gap);
    }
}

void presenceTimes_t::addStep(double time) {
    const double step = m_last ? time - *m_last : 0;
    if (step > 0) {
        int exponent = 0;
        const double mantissa = std::frexp(step, &exponent); // from 0.5, below 1
        const int part = static_cast<int>((mantissa - 0.5) * 2 * partsOfPower);
        const int length = (exponent - leastExponent) * partsOfPower + part;
        ++m_steps[static_cast<std::size_t>(
            std::clamp(length, 0, static_cast<int>(lengthCount) - 1))];
        keep({*m_last, time});
    }
    m_last = time;
}

void presenceTimes_t::keep(const gap_t& gap) {
    if (m_longest.size() < mostGaps) {
        m_longest.push_back(gap);
    } else if (isLonger(gap, m_longest.front())) { // the shortest one makes room
        std::pop_heap(m_longest.begin(), m_longest.end(), isLonger);
        m_longest.back() = gap;
    } else {
        return;
    }
    std::push_heap(m_longest.begin(), m_longest.end(), isLonger);
}

double presenceTimes_t::usualStep() const {
    const auto count = std::accumulate(m_steps.begin(), m_steps.end(), std::uint64_t{0});
    if (count == 0) {
        return 0;
    }
    const auto wanted =
        static_cast<std::uint64_t>(usualShare * static_cast<double>(count - 1)); // from 0
    std::uint64_t shorter = 0;
    std::size_t length = 0;
    while (shorter + m_steps[length] <= wanted) {
        shorter += m_steps[length++];
    }
    // the longest step of this length
    const int power = static_cast<int>(length) / partsOfPower + leastExponent;
    const int part = static_cast<int>(length) % partsOfPower + 1;
    return std::ldexp(0.5 + part / (2.0 * partsOfPower), power);
}

std::vector<interval_t> presenceTimes_t::runs() const {
    std::vector<interval_t> sorted = m_runs.all();
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const interval_t& a, const interval_t& b) { return a.first < b.first; });
    std::vector<interval_t> runs;
    for (const interval_t& run : sorted) {
        if (!runs.empty() && run.first < runs.back().last) {
            runs.back().last = std::max(runs.back().last, run.last);
            runs.back().count += run.count;
        } else {
            runs.push_back(run);
        }
    }
    return runs;
}

std::vector<gap_t> presenceTimes_t::gaps() const {
    const std::vector<interval_t> filled = runs();
    const double least = usualStepsOfGap * usualStep();
    std::vector<gap_t> all;
    for (const gap_t& gap : m_longest) {
        if (gap.length() > least) {
            addFree(all, gap, filled);
        }
    }
    all.erase(std::remove_if(all.begin(), all.end(),
                             [&](const gap_t& gap) { return gap.length() <= least; }),
              all.end());
    std::sort(all.begin(), all.end(),
              [](const gap_t& a, const gap_t& b) { return a.begin < b.begin; });
    return all;
}
