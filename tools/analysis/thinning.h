// A track with fewer points.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "tools/analysis/voyage.h"

struct thinningOptions_t {
    double everySeconds = 0; ///< at least this from one point to the next; 0: all
    double everyMetres = 0;
    double tolerance = 0; ///< metres; points that are nearer to the line without them are left out
    double maxGap = 60;   ///< seconds; the line breaks where there is more between two positions
};

/// Takes the positions of a track one by one, and gives those that stay, line by line.
class thinning_t {
public:
    using use_t = std::function<void(const fix_t& fix)>;

    /// `point` gets the positions that stay, `end` is called behind the last one of each line.
    thinning_t(const thinningOptions_t& options, use_t point, std::function<void()> end)
        : m_options(options), m_point(std::move(point)), m_end(std::move(end)) {}

    void add(const fix_t& fix);
    /// What follows begins another line.
    void endLine();

private:
    bool isNextLine(const fix_t& fix) const;
    bool isTooNear(const fix_t& fix) const;

    thinningOptions_t m_options;
    use_t m_point;
    std::function<void()> m_end;
    std::optional<fix_t> m_last; // of all
    std::optional<fix_t> m_kept; // the last one that was not too near
    std::vector<fix_t> m_line;   // with a tolerance: all of it
};
