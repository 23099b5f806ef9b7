// The line on a terminal that says how much of the inputs has been read.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

class progress_t {
public:
    /// Of these inputs together ("-" is standard input). What share was read, and how long the rest
    /// will take, is said only if all of them are regular files.
    explicit progress_t(const std::vector<std::string>& inputs);
    /// Of so many bytes.
    explicit progress_t(std::uint64_t total);
    progress_t(const progress_t&) = delete;
    progress_t& operator=(const progress_t&) = delete;
    /// Erases the line.
    ~progress_t();

    /// So many bytes more were read, as they are on disk. Shows the line if it is time to.
    void add(std::size_t bytes);

private:
    using clock_t = std::chrono::steady_clock;

    std::string text(double seconds) const;

    std::uint64_t m_total; ///< 0 if it is not known
    std::uint64_t m_read = 0;
    clock_t::time_point m_begin = clock_t::now();
    clock_t::time_point m_next; ///< when the line may be shown
};
