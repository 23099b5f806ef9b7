#include "tools/command/valueArguments.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "kalo/util/stringUtil.h"
#include "tools/command/timeCommand.h"
#include "tools/input/stamp.h"
#include "tools/record/degrees.h"
#include "tools/terminal/message.h"
#include "tools/time/calendarDate.h"

namespace {

double positiveOfArgument(const std::string& text) {
    double number = 0;
    if (!kalo::decode(text, number) || !(number > 0) || !std::isfinite(number)) {
        throw usageError_t("not a number above 0: " + printable(text));
    }
    return number;
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
