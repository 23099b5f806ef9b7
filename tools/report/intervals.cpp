#include "tools/report/intervals.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double shortestGap = 60; // seconds, as in `kalo check`
constexpr double usualSteps = 10;
constexpr std::uint64_t fewValues = 32; // a gap among few values would make the mean step long

void join(interval_t& to, const interval_t& from) {
    if (from.least < to.least) {
        to.least = from.least;
        to.leastTime = from.leastTime;
    }
    if (from.greatest > to.greatest) {
        to.greatest = from.greatest;
        to.greatestTime = from.greatestTime;
    }
    to.first = std::min(to.first, from.first);
    to.last = std::max(to.last, from.last);
    to.count += from.count;
}

} // namespace

bool intervals_t::isGap(double step) const {
    return step > shortestGap && (m_count < 2 || step > usualSteps * usualStep());
}

double intervals_t::usualStep() const {
    if (m_count > fewValues || m_length > 1) {
        return (m_all.back().last - m_all.front().first) / static_cast<double>(m_count - 1);
    }
    std::vector<double> steps;
    for (std::size_t i = 1; i < m_all.size(); ++i) {
        steps.push_back(std::abs(m_all[i].first - m_all[i - 1].last));
    }
    const auto median = steps.begin() + static_cast<std::ptrdiff_t>((steps.size() - 1) / 2);
    std::nth_element(steps.begin(), median, steps.end());
    return *median;
}

void intervals_t::add(double time, double value) {
    push({time, time, time, value, time, value, 1});
}

void intervals_t::append(const intervals_t& later) {
    m_length = std::max(m_length, later.m_length);
    for (const interval_t& interval : later.m_all) {
        push(interval);
    }
}

void intervals_t::push(const interval_t& interval) {
    const bool joins = !m_all.empty() && m_all.back().count + interval.count <= m_length &&
                       interval.first >= m_all.back().last &&
                       !isGap(interval.first - m_all.back().last);
    m_count += interval.count;
    if (joins) {
        join(m_all.back(), interval);
        return;
    }
    m_all.push_back(interval);
    if (m_all.size() > m_most) {
        thin();
    }
}

// Joins neighbours in pairs: first those without a gap between them, and all if that is not enough.
void intervals_t::thin() {
    m_length *= 2;
    for (const bool keepsGaps : {true, false}) {
        std::size_t kept = 0;
        bool isPaired = true;
        for (const interval_t& interval : m_all) {
            const bool joins =
                !isPaired && !(keepsGaps && isGap(std::abs(interval.first - m_all[kept - 1].last)));
            if (joins) {
                join(m_all[kept - 1], interval);
            } else {
                m_all[kept++] = interval;
            }
            isPaired = joins;
        }
        m_all.resize(kept);
        if (kept <= m_most - m_most / 4) {
            return;
        }
    }
}
