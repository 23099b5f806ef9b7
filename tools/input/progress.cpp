#include "tools/input/progress.h"

#include <algorithm>

#include <fmt/format.h>

#include "tools/input/input.h"
#include "tools/terminal/message.h"
#include "tools/time/instantText.h"

namespace {

// A run that is over soon needs no line, and one that changes too often cannot be read.
constexpr std::chrono::milliseconds untilFirst{500};
constexpr std::chrono::milliseconds untilNext{200};

std::uint64_t totalSize(const std::vector<std::string>& inputs) {
    std::uint64_t total = 0;
    for (const std::string& name : inputs) {
        struct stat status = {};
        if (!readStatus(name, status)) {
            continue; // opening it will say why
        }
        if (!S_ISREG(status.st_mode)) {
            return 0;
        }
        total += static_cast<std::uint64_t>(status.st_size);
    }
    return total;
}

std::string sizeText(double bytes) {
    constexpr double kilo = 1e3;
    constexpr double mega = 1e6;
    constexpr double giga = 1e9;
    return bytes < kilo   ? fmt::format("{:.0f} B", bytes)
           : bytes < mega ? fmt::format("{:.1f} kB", bytes / kilo)
           : bytes < giga ? fmt::format("{:.1f} MB", bytes / mega)
                          : fmt::format("{:.2f} GB", bytes / giga);
}

std::string timeLeftText(double seconds) {
    constexpr double minute = 60;
    return seconds < minute ? fmt::format("{:.0f} s", seconds) : durationText(seconds);
}

} // namespace

progress_t::progress_t(const std::vector<std::string>& inputs) : progress_t(totalSize(inputs)) {}

progress_t::progress_t(std::uint64_t total) : m_total(total), m_next(m_begin + untilFirst) {}

progress_t::~progress_t() { show(""); }

void progress_t::add(std::size_t bytes) {
    m_read += bytes;
    const clock_t::time_point now = clock_t::now();
    if (now >= m_next) {
        m_next = now + untilNext;
        show(text(std::chrono::duration<double>(now - m_begin).count()));
    }
}

std::string progress_t::text(double seconds) const {
    constexpr double percent = 100;
    const auto read = static_cast<double>(m_read);
    const double rate = read / seconds;
    const std::string rateText = sizeText(rate) + "/s";
    if (m_total == 0) {
        return fmt::format("{} read, {}", sizeText(read), rateText);
    }
    // A file may have grown in the meantime.
    const double total = std::max(static_cast<double>(m_total), read);
    return fmt::format("{} of {} read, {:.0f} %, {}, {} left", sizeText(read), sizeText(total),
                       percent * read / total, rateText, timeLeftText((total - read) / rate));
}
