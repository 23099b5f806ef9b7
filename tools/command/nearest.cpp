#include "tools/command/nearest.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <utility>

namespace {

constexpr std::size_t longestWord = 64; // a longer word is not a misspelt name

int lower(char c) { return std::tolower(static_cast<unsigned char>(c)); }

// How many letters must be inserted, removed, replaced, or swapped with their neighbour.
std::size_t distance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> before;
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::vector<std::size_t> next(b.size() + 1, i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const bool same = lower(a[i - 1]) == lower(b[j - 1]);
            next[j] = std::min({row[j] + 1, next[j - 1] + 1, row[j - 1] + (same ? 0 : 1)});
            if (i > 1 && j > 1 && lower(a[i - 1]) == lower(b[j - 2]) &&
                lower(a[i - 2]) == lower(b[j - 1])) {
                next[j] = std::min(next[j], before[j - 2] + 1);
            }
        }
        before = std::exchange(row, std::move(next));
    }
    return row.back();
}

// Whether `word`, of some letters, is how `candidate` begins.
bool isBegun(std::string_view word, std::string_view candidate) {
    constexpr std::size_t some = 3;
    return word.size() >= some && word.size() < candidate.size() &&
           std::equal(word.begin(), word.end(), candidate.begin(),
                      [](char a, char b) { return lower(a) == lower(b); });
}

} // namespace

std::string nearest(std::string_view word, const std::vector<std::string_view>& candidates) {
    if (word.empty() || word.size() > longestWord) {
        return {};
    }
    std::string_view best;
    std::size_t least = word.size() / 3 + 1;
    for (const std::string_view candidate : candidates) {
        const std::size_t changes = isBegun(word, candidate) ? 1 : distance(word, candidate);
        if (changes <= least && (best.empty() || changes < least)) {
            least = changes;
            best = candidate;
        }
    }
    return std::string(best);
}

std::string suggestion(std::string_view word, const std::vector<std::string_view>& candidates) {
    const std::string best = nearest(word, candidates);
    return best.empty() ? "" : "; did you mean " + best + "?";
}
