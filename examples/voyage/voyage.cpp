// kalo-voyage: writes the log of a survey vessel's voyage, the same bytes for the same arguments
// on every machine.

#include "instruments.h"
#include "log.h"
#include "vessel.h"

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

namespace {

using voyage::number_t;

constexpr char usage[] =
    "usage: kalo-voyage [--seed N] [--bytes N] [--start YYYY-MM-DDTHH:MM:SS] [--clean] "
    "[--long-line]\n"
    "Writes the log of a survey vessel's voyage to standard output.\n"
    "  --seed N     another voyage (default 1)\n"
    "  --bytes N    end after the second that reaches N bytes (default 60000)\n"
    "  --start T    date and time of departure, UTC, from 1980 (default 2026-03-14T23:58:30)\n"
    "  --clean      without damage\n"
    "  --long-line  with one more line, of 70000 bytes, which --bytes does not count\n";

constexpr std::size_t blockSize = 262144;
constexpr std::size_t longLineSize = 70000;
constexpr number_t longLineEpoch = 10;

struct options_t {
    std::uint64_t seed = 1;
    std::uint64_t bytes = 60000;
    number_t start = 0;
    bool clean = false;
    bool longLine = false;
};

template <typename T>
bool parse(std::string_view text, T& out) {
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, out);
    return result.ec == std::errc() && result.ptr == end;
}

bool parseStart(std::string_view text, number_t& out) {
    constexpr std::string_view layout = "0000-00-00T00:00:00";
    if (text.size() != layout.size()) {
        return false;
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool fits =
            layout[i] == '0' ? text[i] >= '0' && text[i] <= '9' : text[i] == layout[i];
        if (!fits) {
            return false;
        }
    }
    const auto part = [text](std::size_t from, std::size_t length) {
        number_t value = 0;
        parse(text.substr(from, length), value);
        return value;
    };
    const voyage::day_t date{part(0, 4), part(5, 2), part(8, 2)};
    const number_t hour = part(11, 2);
    const number_t minute = part(14, 2);
    const number_t second = part(17, 2);
    if (date.year < 1980 || date.month < 1 || date.month > 12 || hour > 23 || minute > 59 ||
        second > 59) {
        return false;
    }
    const number_t days = voyage::daysOf(date);
    const voyage::day_t real = voyage::dayOf(days);
    if (real.month != date.month || real.day != date.day) {
        return false; // no such day in that month
    }
    out = days * voyage::secondsOfDay + hour * 3600 + minute * 60 + second;
    return true;
}

bool parseOptions(int count, char** arguments, options_t& options) {
    parseStart("2026-03-14T23:58:30", options.start);
    for (int i = 1; i < count; ++i) {
        const std::string_view name = arguments[i];
        const std::string_view value = i + 1 < count ? arguments[i + 1] : "";
        bool good = true;
        if (name == "--clean") {
            options.clean = true;
        } else if (name == "--long-line") {
            options.longLine = true;
        } else if (++i; name == "--seed") {
            good = parse(value, options.seed);
        } else if (name == "--bytes") {
            good = parse(value, options.bytes);
        } else if (name == "--start") {
            good = parseStart(value, options.start);
        } else {
            good = false;
        }
        if (!good) {
            return false;
        }
    }
    return true;
}

} // namespace

int main(int count, char** arguments) {
    if (count == 2 && std::strcmp(arguments[1], "--help") == 0) {
        return std::fputs(usage, stdout) < 0 ? 1 : 0;
    }
    options_t options;
    if (!parseOptions(count, arguments, options)) {
        (void)std::fputs(usage, stderr);
        return 2;
    }

    voyage::vessel_t vessel(options.seed, options.start);
    voyage::log_t log(options.seed, !options.clean);
    std::uint64_t uncounted = 0;
    bool written = true;
    for (;; vessel.step()) {
        log.beginEpoch(vessel.clock);
        if (options.longLine && vessel.epoch == longLineEpoch) {
            std::string text = "$GNTXT,01,01,00,";
            text.resize(longLineSize, '.');
            log.line(text);
            uncounted = longLineSize;
        }
        voyage::writeEpoch(vessel, log);
        if (log.bytes() - uncounted >= options.bytes || !written) {
            break;
        }
        if (log.buffered() >= blockSize) {
            written = log.flush(stdout);
        }
    }
    if (!options.clean) {
        log.cutLastEnd();
    }
    written = log.flush(stdout) && std::fflush(stdout) == 0 && written;
    if (!written) {
        (void)std::fputs("kalo-voyage: standard output: not all could be written\n", stderr);
        return 1;
    }
    return 0;
}
