// The track for a map in bounded memory: of each interval the outermost positions stay.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "tools/analysis/voyage.h"

struct trackPoint_t {
    std::optional<double> time; ///< Unix seconds
    double latitude = 0;        ///< degrees
    double longitude = 0;
    int quality = -1;         ///< of GGA; -1 if it is not known
    std::uint64_t number = 0; ///< of the position, from 0
    bool beginsLine = false;
};

class trackLines_t {
public:
    /// At most so many points are given.
    explicit trackLines_t(std::size_t most) : m_most(most) {}

    void add(const fix_t& fix);
    /// What follows begins another line.
    void endLine() { m_last.reset(); }

    /// In the order in which they came.
    std::vector<trackPoint_t> points() const;
    /// The greatest number of positions in an interval; 1 as long as every position is kept.
    std::uint64_t length() const { return m_length; }

private:
    // Of consecutive positions the southernmost, northernmost, westernmost and easternmost one, and
    // the one with the worst quality.
    static constexpr std::size_t pointsOfPiece = 5;
    struct piece_t {
        std::array<trackPoint_t, pointsOfPiece> points;
        std::uint64_t count = 0;
        bool beginsLine = false;
    };

    static std::vector<trackPoint_t> pointsOf(const piece_t& piece);
    static std::size_t pointCount(const piece_t& piece);
    void join(piece_t& to, const piece_t& from);
    void thin();
    void joinPairs(bool keepsLines);

    std::size_t m_most;
    std::size_t m_pointCount = 0; // of all pieces
    std::uint64_t m_length = 1;
    std::uint64_t m_count = 0;
    std::vector<piece_t> m_pieces;
    std::optional<fix_t> m_last;
};
