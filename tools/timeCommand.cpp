#include "tools/timeCommand.h"

#include <cmath>

#include <unistd.h>

#include "kalo/time/dateTime.h"
#include "kalo/util/stringUtil.h"
#include "tools/message.h"
#include "tools/output.h"
#include "tools/readInput.h"
#include "tools/stamp.h"
#include "tools/stopSignal.h"

namespace {

constexpr double gpsEpoch = 315964800;    // 1980-01-06
constexpr double lastSecond = 4294967295; // whole seconds are counted in 32 bits
constexpr double secondsPerWeek = 604800;
constexpr unsigned lastWeek = 6579; // holds that last second

constexpr const char* afterEnd = "after 2106-02-07T06:28:15Z, the end of what can be converted";

struct instantOfGps_t {
    kalo::gpsTime_t gps;
    double unixTime = 0;
};

kalo::gpsTime_t gpsOfCount(double secondsFromEpoch, double fraction) {
    const double week = std::floor(secondsFromEpoch / secondsPerWeek);
    return {static_cast<unsigned>(week), secondsFromEpoch - week * secondsPerWeek + fraction};
}

// The inverse of `toUnix` by the table, which says no offsets: the latest GPS second that gives the
// Unix second, as an inserted leap second gives the same as the one behind it.
kalo::gpsTime_t gpsByTable(double unixTime) {
    const double whole = std::floor(unixTime);
    double count = whole - gpsEpoch;
    while (gpsOfCount(count + 1, 0).toUnix() <= whole) {
        ++count;
    }
    return gpsOfCount(count, unixTime - whole);
}

// Reads one of the three notations; otherwise says what is wrong with it.
class converter_t {
public:
    explicit converter_t(const std::optional<kalo::gps2utc_t>& leap) : m_leap(leap) {}

    const char* convert(const std::string& text, instantOfGps_t& out) const {
        const std::size_t colon = text.find(':');
        if (!text.empty() && text[0] == '@') {
            return kalo::decode(text.substr(1), out.unixTime) ? fromUnix(out)
                                                              : "no number behind the @";
        }
        if (text.find('-') == std::string::npos && colon != std::string::npos) {
            if (!kalo::decode(text.substr(0, colon), out.gps.week, 10) ||
                !kalo::decode(text.substr(colon + 1), out.gps.seconds)) {
                return "not a GPS week and seconds, WEEK:SECONDS";
            }
            return fromGps(out);
        }
        // A stamp ends at what follows it.
        if (text.empty() || stampLength(text + " ") != text.size()) {
            return "no instant, such as 2017-01-01T00:00:00Z, 1930:18 or @1483228800";
        }
        out.unixTime = *stampTime(text);
        return fromUnix(out);
    }

private:
    const char* fromUnix(instantOfGps_t& out) const {
        if (!(out.unixTime >= gpsEpoch)) {
            return "before 1980-01-06, the beginning of GPS time";
        }
        if (out.unixTime >= lastSecond + 1) {
            return afterEnd;
        }
        out.gps = m_leap ? kalo::gpsTime_t(out.unixTime, *m_leap) : gpsByTable(out.unixTime);
        return nullptr;
    }

    const char* fromGps(instantOfGps_t& out) const {
        if (out.gps.week > lastWeek) {
            return "a week after 6579, the end of what can be converted";
        }
        if (!(out.gps.seconds >= 0 && out.gps.seconds < secondsPerWeek)) {
            return "seconds outside the week, 0 to below 604800";
        }
        out.unixTime = m_leap ? out.gps.toUnix(*m_leap) : out.gps.toUnix();
        return out.unixTime > lastSecond ? afterEnd : nullptr;
    }

    const std::optional<kalo::gps2utc_t>& m_leap;
};

// What a double of this size tells apart.
double toMicroseconds(double seconds) { return std::round(seconds * 1e6) / 1e6; }

void print(fmt::memory_buffer& out, const instantOfGps_t& instant, bool forPeople) {
    const double rounded = toMicroseconds(instant.unixTime);
    const double whole = std::floor(rounded);
    const kalo::dateTime_t utc(whole);
    std::string fraction = fmt::format("{:.6f}", rounded - whole).substr(1);
    fraction.erase(fraction.find_last_not_of("0.") + 1);
    const std::string time = fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02.0f}{}Z", utc.date.year,
                                         utc.date.month, utc.date.day, utc.timeOfDay.hour,
                                         utc.timeOfDay.minute, utc.timeOfDay.second, fraction);
    fmt::format_to(fmt::appender(out),
                   forPeople ? "{}  GPS week {}, {} s  Unix {}\n"
                             : "{{\"time\":\"{}\",\"week\":{},\"seconds\":{},\"unix\":{}}}\n",
                   time, instant.gps.week, toMicroseconds(instant.gps.seconds), instant.unixTime);
}

class run_t {
public:
    explicit run_t(const timeOptions_t& options)
        : m_converter(options.leap), m_output(STDOUT_FILENO),
          m_forPeople(isatty(STDOUT_FILENO) != 0) {}

    void convert(const std::string& text, const std::string& place) {
        instantOfGps_t instant;
        if (const char* reason = m_converter.convert(text, instant)) {
            complain(place, reason);
            m_status = exitFailure;
            return;
        }
        print(m_output.buffer(), instant, m_forPeople);
    }

    void convertInput() {
        input_t input("-");
        const bool isRead = readLines(input, m_output, [&](const line_t& line) {
            convert(std::string(line.text), fmt::format("-: line {}: {}", line.number, line.text));
        });
        m_status = isRead ? m_status : exitFailure;
    }

    int finish() {
        m_output.flush();
        const int status = exitStatus(m_output);
        return status != 0 ? status : stopSignal() != 0 ? exitSignal + stopSignal() : m_status;
    }

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
    return out.wnLsf < 256 && out.dn >= 1 && out.dn <= 7;
}

int timeCommand(const timeOptions_t& options) {
    run_t run(options);
    for (const std::string& text : options.texts) {
        run.convert(text, text);
    }
    if (options.texts.empty()) {
        run.convertInput();
    }
    return run.finish();
}
