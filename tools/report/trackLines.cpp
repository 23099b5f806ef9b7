#include "tools/report/trackLines.h"

#include <algorithm>

#include "tools/analysis/thinning.h"
#include "tools/record/degrees.h"

namespace {

// From the worst fix to the best one. What is not known is as good as a plain fix.
unsigned rankOf(int quality) {
    constexpr int fromWorst[] = {0, 8, 7, 6, 1, 2, 3, 5, 4};
    constexpr int plain = 1;
    const int known = quality < 0 ? plain : quality;
    const auto* const found = std::find(std::begin(fromWorst), std::end(fromWorst), known);
    return static_cast<unsigned>(found - std::begin(fromWorst));
}

using isFarther_t = bool (*)(const trackPoint_t& a, const trackPoint_t& b);
constexpr isFarther_t isFarther[] = {
    [](const trackPoint_t& a, const trackPoint_t& b) { return a.latitude < b.latitude; },
    [](const trackPoint_t& a, const trackPoint_t& b) { return a.latitude > b.latitude; },
    [](const trackPoint_t& a, const trackPoint_t& b) { return a.longitude < b.longitude; },
    [](const trackPoint_t& a, const trackPoint_t& b) { return a.longitude > b.longitude; },
    [](const trackPoint_t& a, const trackPoint_t& b) {
        return rankOf(a.quality) < rankOf(b.quality);
    }};

} // namespace

// In their order, each once.
std::vector<trackPoint_t> trackLines_t::pointsOf(const piece_t& piece) {
    std::vector<trackPoint_t> points(piece.points.begin(), piece.points.end());
    std::sort(points.begin(), points.end(),
              [](const trackPoint_t& a, const trackPoint_t& b) { return a.number < b.number; });
    points.erase(std::unique(points.begin(), points.end(),
                             [](const trackPoint_t& a, const trackPoint_t& b) {
                                 return a.number == b.number;
                             }),
                 points.end());
    return points;
}

std::size_t trackLines_t::pointCount(const piece_t& piece) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < pointsOfPiece; ++i) {
        bool isNew = true;
        for (std::size_t j = 0; j < i; ++j) {
            isNew = isNew && piece.points[j].number != piece.points[i].number;
        }
        count += isNew ? 1 : 0;
    }
    return count;
}

// Of two pieces that are counted.
void trackLines_t::join(piece_t& to, const piece_t& from) {
    static_assert(std::size(isFarther) == pointsOfPiece);
    m_pointCount -= pointCount(to) + pointCount(from);
    for (std::size_t i = 0; i < pointsOfPiece; ++i) {
        if (isFarther[i](from.points[i], to.points[i])) {
            to.points[i] = from.points[i];
        }
    }
    to.count += from.count;
    m_pointCount += pointCount(to);
}

void trackLines_t::add(const fix_t& fix) {
    const thinningOptions_t options; // for the same gaps as in `kalo track`
    const std::optional<double> step = m_last ? timeBetween(*m_last, fix) : std::nullopt;
    trackPoint_t point;
    point.time = fix.time;
    point.latitude = fix.values[quantity_t::latitude] * degreesPerRadian;
    point.longitude = fix.values[quantity_t::longitude] * degreesPerRadian;
    if (fix.values.has(quantity_t::quality)) {
        point.quality = static_cast<int>(fix.values[quantity_t::quality]);
    }
    point.number = m_count++;
    piece_t piece;
    piece.points.fill(point);
    piece.count = 1;
    piece.beginsLine = !m_last || (step && *step > options.maxGap);
    m_last = fix;
    ++m_pointCount;
    if (!piece.beginsLine && m_pieces.back().count < m_length) {
        join(m_pieces.back(), piece);
    } else {
        m_pieces.push_back(piece);
    }
    if (m_pointCount > m_most) {
        thin();
    }
}

void trackLines_t::thin() {
    while (m_pointCount > m_most - m_most / 4 && m_pieces.size() > 1) {
        m_length *= 2;
        const std::size_t before = m_pieces.size();
        joinPairs(true);
        if (m_pieces.size() > before - before / 4) { // too many short lines
            joinPairs(false);
        }
    }
}

// Joins neighbours in pairs; `keepsLines`: only those of the same line.
void trackLines_t::joinPairs(bool keepsLines) {
    std::size_t kept = 0;
    bool isPaired = true;
    for (const piece_t& piece : m_pieces) {
        const bool joins = !isPaired && !(keepsLines && piece.beginsLine);
        if (joins) {
            join(m_pieces[kept - 1], piece);
        } else {
            m_pieces[kept++] = piece;
        }
        isPaired = joins;
    }
    m_pieces.resize(kept);
}

std::vector<trackPoint_t> trackLines_t::points() const {
    std::vector<trackPoint_t> points;
    for (const piece_t& piece : m_pieces) {
        const std::size_t begin = points.size();
        const std::vector<trackPoint_t> ofPiece = pointsOf(piece);
        points.insert(points.end(), ofPiece.begin(), ofPiece.end());
        points[begin].beginsLine = piece.beginsLine;
    }
    return points;
}
