#include "tools/analysis/thinning.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "tools/record/degrees.h"

namespace {

double distanceFromLine(const fix_t& fix, const fix_t& begin, const fix_t& end) {
    const offset_t to = offsetBetween(placeOf(begin), placeOf(end));
    const offset_t at = offsetBetween(placeOf(begin), placeOf(fix));
    const double square = to.east * to.east + to.north * to.north;
    const double along =
        square > 0 ? std::clamp((at.east * to.east + at.north * to.north) / square, 0.0, 1.0) : 0.0;
    return std::hypot(at.east - along * to.east, at.north - along * to.north);
}

// Marks the points that stay, by Douglas and Peucker: the farthest from the line between two that
// stay, if it is beyond the tolerance.
std::vector<bool> keptOf(const std::vector<fix_t>& line, double tolerance) {
    std::vector<bool> kept(line.size());
    kept.front() = kept.back() = true;
    std::vector<std::pair<std::size_t, std::size_t>> spans = {{0, line.size() - 1}};
    while (!spans.empty()) {
        const auto [begin, end] = spans.back();
        spans.pop_back();
        std::size_t farthest = begin;
        double distance = tolerance;
        for (std::size_t i = begin + 1; i < end; ++i) {
            const double other = distanceFromLine(line[i], line[begin], line[end]);
            if (other > distance) {
                farthest = i;
                distance = other;
            }
        }
        if (farthest != begin) {
            kept[farthest] = true;
            spans.emplace_back(begin, farthest);
            spans.emplace_back(farthest, end);
        }
    }
    return kept;
}

} // namespace

bool thinning_t::isNextLine(const fix_t& fix) const {
    const double step =
        placeOf(fix).longitude - placeOf(*m_last).longitude; // over the date line: another line
    const std::optional<double> duration = timeBetween(*m_last, fix);
    return std::fabs(step) > halfTurn || (duration && std::fabs(*duration) > m_options.maxGap);
}

bool thinning_t::isTooNear(const fix_t& fix) const {
    const std::optional<double> duration = timeBetween(*m_kept, fix);
    return (duration && std::fabs(*duration) < m_options.everySeconds) ||
           (m_options.everyMetres > 0 &&
            distanceBetween(placeOf(*m_kept), placeOf(fix)) < m_options.everyMetres);
}

void thinning_t::add(const fix_t& fix) {
    if (m_last && isNextLine(fix)) {
        endLine();
    }
    m_last = fix;
    if (m_kept && isTooNear(fix)) {
        return;
    }
    m_kept = fix;
    if (m_options.tolerance > 0) {
        m_line.push_back(fix);
    } else {
        m_point(fix);
    }
}

void thinning_t::endLine() {
    if (!m_line.empty()) {
        const std::vector<bool> kept = keptOf(m_line, m_options.tolerance);
        for (std::size_t i = 0; i < m_line.size(); ++i) {
            if (kept[i]) {
                m_point(m_line[i]);
            }
        }
        m_line.clear();
    }
    if (m_kept) {
        m_end();
    }
    m_last.reset();
    m_kept.reset();
}
