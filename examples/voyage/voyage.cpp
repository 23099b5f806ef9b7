// kalo-voyage: writes the log of a survey vessel's voyage, the same bytes for the same arguments
// on every machine.

#include "instruments.h"
#include "log.h"
#include "vessel.h"

#include <algorithm>
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
    "                   [--mix] [--values FILE]\n"
    "Writes the log of a survey vessel's voyage to standard output.\n"
    "  --seed N     another voyage (default 1)\n"
    "  --bytes N    end after the second that reaches N bytes (default 60000)\n"
    "  --start T    date and time of departure, UTC, from 1980 (default 2026-03-14T23:58:30)\n"
    "  --clean      without damage\n"
    "  --long-line  with one more line, of 70000 bytes, which --bytes does not count\n"
    "  --mix        another log: clean sentences of 13 types in fixed shares\n"
    "  --values F   also write the values of each undamaged record to F, a JSON object a line,\n"
    "               with keys and units of kalo decode; [V,R] is a number within R of V\n";

constexpr std::size_t longLineSize = 70000;
constexpr number_t longLineEpoch = 10;

struct options_t {
    std::uint64_t seed = 1;
    std::uint64_t bytes = 60000;
    number_t start = 0;
    bool clean = false;
    bool longLine = false;
    bool mix = false;
    std::string values;
};

template <typename T>
bool parse(std::string_view text, T& out) {
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, out);
    return result.ec == std::errc() && result.ptr == end;
}

bool parseStart(std::string_view text, number_t& out) {
    const auto part = [text](std::size_t from, std::size_t length) {
        number_t value = 0;
        parse(text.substr(std::min(from, text.size()), length), value);
        return value;
    };
    const voyage::day_t date{part(0, 4), part(5, 2), part(8, 2)};
    out = voyage::daysOf(date) * voyage::secondsOfDay + part(11, 2) * 3600 + part(14, 2) * 60 +
          part(17, 2);
    // A text of another layout, or with no such date or time, is not what its instant prints.
    return date.year >= 1980 && voyage::dateText(out) + 'T' + voyage::clockText(out) == text;
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
        } else if (name == "--mix") {
            options.mix = options.clean = true;
        } else if (++i; name == "--seed") {
            good = parse(value, options.seed);
        } else if (name == "--bytes") {
            good = parse(value, options.bytes);
        } else if (name == "--start") {
            good = parseStart(value, options.start);
        } else if (name == "--values") {
            options.values = value;
            good = !value.empty();
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

    std::FILE* values = options.values.empty() ? nullptr : std::fopen(options.values.c_str(), "wb");
    if (!options.values.empty() && values == nullptr) {
        std::perror(("kalo-voyage: " + options.values).c_str());
        return 1;
    }

    voyage::vessel_t vessel(options.seed, options.start);
    voyage::log_t log(options.seed, !options.clean, values != nullptr);
    if (options.mix) { // another ocean, where signs and digits are others: 50 S, 176 E
        vessel.latitude = -vessel.latitude;
        vessel.longitude += 176 * voyage::degree;
    }
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
        (options.mix ? voyage::writeMixedEpoch : voyage::writeEpoch)(vessel, log);
        if (log.bytes() - uncounted >= options.bytes || !written) {
            break;
        }
        written = log.flush(stdout, values);
    }
    if (!options.clean) {
        log.cutLastEnd();
    }
    written = log.flush(stdout, values) && std::fflush(stdout) == 0 && written;
    written = (values == nullptr || std::fclose(values) == 0) && written;
    if (!written) {
        (void)std::fputs("kalo-voyage: not all could be written\n", stderr);
        return 1;
    }
    return 0;
}
