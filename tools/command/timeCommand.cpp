#include "tools/command/timeCommand.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>
#include <unistd.h>

#include "kalo/time/dateTime.h"
#include "kalo/util/stringUtil.h"
#include "tools/command/readInput.h"
#include "tools/input/stamp.h"
#include "tools/terminal/message.h"
#include "tools/terminal/stopSignal.h"

namespace {

constexpr double gpsEpoch = 315964800;    // 1980-01-06
constexpr double lastSecond = 4294967295; // whole seconds are counted in 32 bits
constexpr double secondsPerWeek = 604800;
constexpr unsigned lastWeek = 6579; // holds that last second

constexpr const char* afterEnd =
    "later than 2106-02-07T06:28:15Z, the latest instant that can be converted";

// An instant on both scales. A leap second has the Unix time of the second after it.
struct instantOfGps_t {
    kalo::gpsTime_t gps;
    double unixTime = 0;
    bool isLeapSecond = false;
};

// The resolution of a double of this size.
double toMicroseconds(double seconds) { return std::round(seconds * 1e6) / 1e6; }

// GPS seconds since the epoch, and back.
double countOf(const kalo::gpsTime_t& gps) { return gps.week * secondsPerWeek + gps.seconds; }

kalo::gpsTime_t gpsOf(double count) {
    const double week = std::floor(count / secondsPerWeek);
    return {static_cast<unsigned>(week), toMicroseconds(count - week * secondsPerWeek)};
}

bool areDigits(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// Reads one of the three notations, or says what is wrong.
class converter_t {
public:
    explicit converter_t(const std::optional<kalo::gps2utc_t>& leap) : m_leap(leap) {}

    const char* convert(const std::string& text, instantOfGps_t& out) const {
        const std::size_t colon = std::min(text.find(':'), text.size());
        if (!text.empty() && text[0] == '@') {
            return kalo::decode(text.substr(1), out.unixTime)
                       ? fromUnix(out, false)
                       : "not Unix seconds (expected @SECONDS)";
        }
        if (colon < text.size() && areDigits(text.substr(0, colon))) {
            if (!kalo::decode(text.substr(0, colon), out.gps.week, 10) ||
                !kalo::decode(text.substr(colon + 1), out.gps.seconds)) {
                return "not a GPS week and seconds (expected WEEK:SECONDS)";
            }
            return fromGps(out);
        }
        const std::optional<double> stamp = isoTime(text);
        if (!stamp) {
            return "not an instant (expected 2017-01-01T00:00:00Z, 1930:18 or @1483228800)";
        }
        out.unixTime = *stamp;
        return fromUnix(out, statesSecond60(text));
    }

private:
    // The seconds of a stamp stand behind its second colon.
    static bool statesSecond60(const std::string& stamp) {
        return stamp.compare(stamp.find(':', stamp.find(':') + 1) + 1, 2, "60") == 0;
    }

    // The Unix second of a GPS second.
    double unixOf(double count) const {
        const kalo::gpsTime_t gps = gpsOf(count);
        return m_leap ? gps.toUnix(*m_leap) : gps.toUnix();
    }

    // The latest GPS second of a Unix second.
    double countOfUnix(double unixTime) const {
        if (m_leap) {
            return countOf(kalo::gpsTime_t(unixTime, *m_leap));
        }
        double count = unixTime - gpsEpoch;
        while (unixOf(count + 1) <= unixTime) {
            ++count;
        }
        return count;
    }

    // Whether a leap second, the one in front of the latest, has this Unix second too.
    bool hasLeapSecond(double unixTime) const {
        return unixTime > gpsEpoch && countOfUnix(unixTime) - countOfUnix(unixTime - 1) == 2;
    }

    const char* fromUnix(instantOfGps_t& out, bool isLeapSecond) const {
        if (!(out.unixTime >= gpsEpoch)) {
            return "earlier than 1980-01-06, the start of GPS time";
        }
        const double second = std::floor(out.unixTime);
        out.unixTime = toMicroseconds(out.unixTime);
        if (out.unixTime >= lastSecond + 1) {
            return afterEnd;
        }
        if (isLeapSecond && !hasLeapSecond(second)) {
            return "no leap second was inserted at that time";
        }
        if (out.unixTime == second + 1) {
            // Rounded up: out of a leap second, or perhaps into one.
            out.unixTime = isLeapSecond ? second : second + 1;
            isLeapSecond = !isLeapSecond && hasLeapSecond(second + 1);
        }
        const double whole = std::floor(out.unixTime);
        out.isLeapSecond = isLeapSecond;
        out.gps = gpsOf(countOfUnix(whole) - (isLeapSecond ? 1 : 0) + (out.unixTime - whole));
        return nullptr;
    }

    const char* fromGps(instantOfGps_t& out) const {
        if (out.gps.week > lastWeek) {
            return "GPS week out of range (expected 0 to 6579)";
        }
        if (!(out.gps.seconds >= 0 && out.gps.seconds < secondsPerWeek)) {
            return "seconds outside the week (expected at least 0 and below 604800)";
        }
        const double count = toMicroseconds(countOf(out.gps));
        const double whole = std::floor(count);
        const double unixSecond = unixOf(whole);
        out.gps = gpsOf(count);
        out.unixTime = unixSecond + (count - whole);
        out.isLeapSecond = hasLeapSecond(unixSecond) && whole == countOfUnix(unixSecond) - 1;
        return out.unixTime >= lastSecond + 1 ? afterEnd : nullptr;
    }

    const std::optional<kalo::gps2utc_t>& m_leap;
};

void printInstant(buffer_t& out, const instantOfGps_t& instant, bool forPeople) {
    const double rounded = toMicroseconds(instant.unixTime);
    const double whole = std::floor(rounded);
    const kalo::dateTime_t utc(instant.isLeapSecond ? whole - 1 : whole);
    std::string fraction = fmt::format("{:.6f}", rounded - whole).substr(1);
    fraction.erase(fraction.find_last_not_of("0.") + 1);
    const std::string time =
        fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02.0f}{}Z", utc.date.year, utc.date.month,
                    utc.date.day, utc.timeOfDay.hour, utc.timeOfDay.minute,
                    utc.timeOfDay.second + (instant.isLeapSecond ? 1 : 0), fraction);
    out.append(fmt::format(
        fmt::runtime(forPeople ? "{}  GPS week {}, {} s  Unix {}\n"
                               : "{{\"time\":\"{}\",\"week\":{},\"seconds\":{},\"unix\":{}}}\n"),
        time, instant.gps.week, instant.gps.seconds, rounded));
}

class run_t {
public:
    explicit run_t(const timeOptions_t& options)
        : m_converter(options.leap), m_output(STDOUT_FILENO),
          m_forPeople(isatty(STDOUT_FILENO) != 0) {}

    void convert(const std::string& text, const std::string& place) {
        instantOfGps_t instant;
        if (const char* reason = m_converter.convert(text, instant)) {
            complain(place.empty() ? text : place + ": " + text, reason);
            m_status = exitFailure;
            return;
        }
        printInstant(m_output.buffer(), instant, m_forPeople);
    }

    void convertInput() {
        std::string name;
        const lineUser_t user = {[&](const std::string& source) { name = source; },
                                 [&](const line_t& line) {
                                     convert(std::string(line.text),
                                             fmt::format("{}: line {}", name, line.number));
                                 }};
        m_status = readLines("-", m_output, user) ? m_status : exitFailure;
    }

    int finish() { return ::finish(m_output, m_status); }

private:
    converter_t m_converter;
    output_t m_output;
    bool m_forPeople;
    int m_status = 0;
};

} // namespace

bool parseLeap(const std::string& text, kalo::gps2utc_t& out) {
    std::uint32_t* const members[] = {&out.deltaTls, &out.deltaTlsf, &out.wnLsf, &out.dn};
    std::size_t from = 0;
    for (std::uint32_t* member : members) {
        const bool isLast = member == members[3];
        const std::size_t to = isLast ? text.size() : text.find(',', from);
        if (to == std::string::npos || !kalo::decode(text.substr(from, to - from), *member, 10)) {
            return false;
        }
        from = to + 1;
    }
    constexpr std::uint32_t mostDelta = 127; // a signed byte of the navigation message
    return out.deltaTls <= mostDelta && out.deltaTlsf <= mostDelta && out.wnLsf < 256 &&
           out.dn >= 1 && out.dn <= 7;
}

int timeCommand(const timeOptions_t& options) {
    run_t run(options);
    for (const std::string& text : options.texts) {
        run.convert(text, "");
    }
    if (options.texts.empty()) {
        run.convertInput();
    }
    return run.finish();
}
