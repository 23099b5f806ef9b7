#include "tools/command/valueArguments.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <thread>

#include "kalo/util/stringUtil.h"
#include "tools/command/timeCommand.h"
#include "tools/input/stamp.h"
#include "tools/record/degrees.h"
#include "tools/terminal/message.h"
#include "tools/time/calendarDate.h"

namespace {

// So that it is an offset of a file.
constexpr std::uint64_t mostBytes = std::numeric_limits<std::int64_t>::max();

double positiveOfArgument(const std::string& text) {
    double number = 0;
    if (!kalo::decode(text, number) || !(number > 0) || !std::isfinite(number)) {
        throw usageError_t("not a number above 0: " + printable(text));
    }
    return number;
}

// Digits.
std::optional<std::uint64_t> numberOf(std::string_view text) {
    std::uint64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [at, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && at == end ? std::optional(number) : std::nullopt;
}

// A number of bytes: digits, and a unit behind them.
std::optional<std::uint64_t> bytesOf(std::string_view text) {
    struct unit_t {
        std::string_view name;
        unsigned shift;
    };
    constexpr unit_t units[] = {{"KiB", 10}, {"MiB", 20}, {"GiB", 30}, {"", 0}};
    const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
    const std::optional<std::uint64_t> number = numberOf(text.substr(0, digits));
    for (const unit_t& unit : units) {
        if (number && text.substr(digits) == unit.name && *number <= mostBytes >> unit.shift) {
            return *number << unit.shift;
        }
    }
    return {};
}

} // namespace

kalo::date_t dateOfArgument(const std::string& text) {
    kalo::date_t date;
    if (!parseDate(text, date)) {
        throw usageError_t("no such date: " + printable(text) + " (expected YYYY-MM-DD)");
    }
    return date;
}

double boundOfArgument(const std::string& text, bool isLast) {
    kalo::date_t date;
    if (parseDate(text, date)) {
        constexpr double secondsPerDay = 86400;
        const double begin = kalo::dateTime_t(date, {}).toTimestamp();
        return isLast ? std::nextafter(begin + secondsPerDay, begin) : begin;
    }
    const std::optional<double> instant = isoTime(text);
    if (!instant) {
        throw usageError_t("no such time: " + printable(text) +
                           " (expected YYYY-MM-DD or YYYY-MM-DDThh:mm:ssZ)");
    }
    return *instant;
}

kalo::gps2utc_t leapOfArgument(const std::string& text) {
    kalo::gps2utc_t leap;
    if (!parseLeap(text, leap)) {
        throw usageError_t("not leap-second parameters: " + printable(text) +
                           " (expected deltaTls,deltaTlsf,wnLsf,dn; the first two up to 127, "
                           "wnLsf up to 255, dn 1 to 7)");
    }
    return leap;
}

place_t placeOfArgument(const std::string& text) {
    constexpr double mostLatitude = 90;
    constexpr double mostLongitude = 180;
    const std::size_t comma = std::min(text.find(','), text.size());
    double latitude = 0;
    double longitude = 0;
    if (comma == text.size() || !kalo::decode(text.substr(0, comma), latitude) ||
        !kalo::decode(text.substr(comma + 1), longitude) ||
        !(std::fabs(latitude) <= mostLatitude) || !(std::fabs(longitude) <= mostLongitude)) {
        throw usageError_t("no such place: " + printable(text) +
                           " (expected degrees: LATITUDE,LONGITUDE)");
    }
    return {latitude * radiansPerDegree, longitude * radiansPerDegree};
}

byteRange_t rangeOfArgument(const std::string& text) {
    const std::string_view all = text;
    const std::size_t hyphen = std::min(text.find('-'), text.size());
    const bool isOpen = hyphen + 1 == text.size();
    const std::optional<std::uint64_t> begin = bytesOf(all.substr(0, hyphen));
    const std::optional<std::uint64_t> end =
        hyphen + 1 < text.size() ? bytesOf(all.substr(hyphen + 1)) : std::nullopt;
    if (!begin || !(end || isOpen)) {
        throw usageError_t("not a range of bytes: " + printable(text) +
                           " (expected BEGIN-END or BEGIN-, such as 64MiB-128MiB)");
    }
    if (end && *end < *begin) {
        throw usageError_t("the range ends before it begins: " + printable(text));
    }
    return {*begin, isOpen ? byteRange_t().end : *end};
}

unsigned jobsOfArgument(const std::string& text) {
    constexpr unsigned most = 256;
    if (text == "auto") {
        return std::clamp(std::thread::hardware_concurrency(), 1U, most);
    }
    const std::optional<std::uint64_t> number = numberOf(text);
    if (!number || *number == 0 || *number > most) {
        throw usageError_t("not a number of threads: " + printable(text) +
                           " (expected 1 to 256, or auto)");
    }
    return static_cast<unsigned>(*number);
}

void takeEvery(const std::string& text, thinningOptions_t& out) {
    const char unit = text.empty() ? '\0' : text.back();
    if (unit != 's' && unit != 'm') {
        throw usageError_t("no such step: " + printable(text) + " (expected 10s or 50m)");
    }
    double& step = unit == 's' ? out.everySeconds : out.everyMetres;
    if (step > 0) {
        throw usageError_t("two steps with one unit: " + printable(text));
    }
    step = positiveOfArgument(text.substr(0, text.size() - 1));
}

option_t positive(const char* names, const char* operand, double& out, const char* help) {
    return {names, operand, help,
            [&out](const std::string& text) { out = positiveOfArgument(text); }};
}
