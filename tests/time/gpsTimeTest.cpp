#include "kalo/time/gpsTime.h"
#include "kalo/time/timeContext.h"

#include <cmath>
#include <fstream>
#include <limits>
#include <sstream>
#include <type_traits>

#include <gtest/gtest.h>

namespace {

using kalo::gps2utc_t;
using kalo::gpsTime_t;

constexpr std::uint32_t epoch = 315964800, day = 86400, week = 604800;
constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr gps2utc_t leap2016{17, 18, 137, 7}, midweek{17, 18, 250, 3};

/// The Unix times of the first second behind each leap second since 1980, from the system's time
/// zone data. GPS minus UTC is 1, 2, ... from then on.
std::vector<std::uint32_t> leapSeconds() {
    std::ifstream file("/usr/share/zoneinfo/leap-seconds.list"); // by seconds since 1900
    std::vector<std::uint32_t> found;
    for (std::string line; std::getline(file, line);) {
        std::istringstream columns(line);
        std::uint32_t since1900 = 0;
        if (columns >> since1900 && since1900 > 2208988800U + epoch) {
            found.push_back(since1900 - 2208988800U);
        }
    }
    return found;
}

TEST(gpsTime, knowsEveryLeapSecond) {
    const std::vector<std::uint32_t> leaps = leapSeconds();
    if (leaps.empty()) {
        GTEST_SKIP() << "no time zone data (Debian: tzdata)";
    }
    const auto unixOf = [](std::uint32_t seconds) {
        return gpsTime_t(seconds / week, seconds % week + 0.75).toUnix();
    };
    for (std::size_t i = 0; i < leaps.size(); ++i) {
        const auto before = leaps[i] - epoch + static_cast<std::uint32_t>(i); // in GPS
        EXPECT_EQ(unixOf(before - 1), leaps[i] - 1 + 0.75) << i;
        EXPECT_EQ(unixOf(before), leaps[i] + 0.75) << i; // the leap second itself
        EXPECT_EQ(unixOf(before + 1), leaps[i] + 0.75) << i;
        EXPECT_EQ(unixOf(before + 9 * week), leaps[i] - 1 + 9.0 * week + 0.75) << i;
    }
}

TEST(gpsTime, convertsByTheTable) {
    const struct {
        gpsTime_t time;
        double timestamp;
    } cases[] = {{{0, 0.5}, epoch + 0.5},
                 {{3000, 604799.5}, 3001.0 * week + epoch - 18.5},
                 {{2999, week + 17.0}, 3000.0 * week + epoch - 1}, // seconds are not reduced
                 {{6578, 0}, 6578.0 * week + epoch - 18},
                 // outside the span weeks wrap; no number of seconds is undefined
                 {{7102, 0}, 7102.0 * week + epoch - 4294967296.0},
                 {{4294967295, 1}, epoch - 604799.0},
                 {{0, -1e300}, -1e300},
                 {{1, infinite}, infinite}};
    for (const auto& row : cases) {
        EXPECT_EQ(row.time.toUnix(), row.timestamp) << row.time.week << ':' << row.time.seconds;
    }
    EXPECT_TRUE(std::isnan(gpsTime_t(1, std::nan("")).toUnix()));
}

TEST(gpsTime, convertsByParameters) {
    const struct {
        gpsTime_t time;
        gps2utc_t parameters;
        double timestamp;
    } cases[] = {{{1930, 18}, leap2016, 1483228801},
                 {{1929, 604800}, leap2016, 1483228782}, // day 7 of the week before
                 {{2042, 259199.5}, midweek, 2042.0 * week + epoch + 259199.5 - 17},
                 {{2042, 259200}, midweek, 2042.0 * week + epoch + 259200 - 18},
                 {{300, 0}, {17, 18, 300, 0}, 300.0 * week + epoch - 17}, // no week modulo 256
                 {{0, 1e300}, leap2016, 1e300},
                 {{0, 0}, {4294967295, 0, 1, 1}, epoch - 4294967295.0},
                 {{0, 1e9}, {0, 5, 0, 4294967295}, epoch + 1e9}};
    for (const auto& row : cases) {
        EXPECT_EQ(row.time.toUnix(row.parameters), row.timestamp)
            << row.time.week << ':' << row.time.seconds;
    }
    EXPECT_TRUE(std::isnan(gpsTime_t(137, std::nan("")).toUnix(leap2016)));
}

TEST(gpsTime, isMadeFromTimestamps) {
    const struct {
        double timestamp;
        gps2utc_t parameters;
        gpsTime_t time;
    } cases[] = {{1483228782.875, leap2016, {1929, 604799.875}}, // the week ends before the day
                 {1483228783.0, leap2016, {1930, 0}},
                 {epoch + 250.0 * week + 3 * day - 1, midweek, {250, 3 * day + 16}},
                 {epoch + 250.0 * week + 3 * day, midweek, {250, 3 * day + 18}},
                 {epoch + 256.0 * week - 1, {0, 5, 0, 1}, {256, 4}},
                 {epoch + 256.0 * week, {0, 5, 0, 1}, {256, 0}}, // the cycle begins again
                 // outside the span: modulo 2^32, and what is not finite counts as 0
                 {epoch - 0.5, {}, {7101, 282495.5}},
                 {epoch + 4294967296.0, {}, {0, 0}},
                 {epoch + 1.0, {4294967295, 0, 1, 1}, {0, 0}},
                 {-1.5, {}, {6579, 23294.5}},
                 {1e300, {}, {6579, 23296}},
                 {-1e300, {}, {6579, 23296}},
                 {infinite, {}, {6579, 23296}},
                 {std::nan(""), {}, {6579, 23296}}};
    for (const auto& row : cases) {
        const gpsTime_t time(row.timestamp, row.parameters);
        EXPECT_EQ(time.week, row.time.week) << row.timestamp;
        EXPECT_EQ(time.seconds, row.time.seconds) << row.timestamp;
    }
}

using kalo::timeContext_t;

static_assert(!std::is_copy_constructible_v<timeContext_t> &&
              !std::is_copy_assignable_v<timeContext_t>);

TEST(timeContext, convertsWithWhatIsKnown) {
    timeContext_t context;
    EXPECT_EQ(context.defaultTimestamp(), 0);
    context.setDefaultTimestamp(5);
    EXPECT_EQ(context.defaultTimestamp(), 5);
    const auto expectTimes = [&](double gpsTime, double gpsWeekSeconds, double timeOfDay) {
        EXPECT_EQ(context.gpsTimeToUnix({1930, 18}), gpsTime);
        EXPECT_EQ(context.gpsWeekSecondsToUnix(18), gpsWeekSeconds);
        EXPECT_EQ(context.timeOfDayToUnix({12, 30, 15.5}), timeOfDay);
    };
    expectTimes(1483228800, 0, 0);
    context.setGpsWeek(0); // known, though 0
    expectTimes(1483228800, 315964818, 0);
    context.setDateFromUnix(1483273815.5); // the time of day is dropped
    expectTimes(1483228800, 315964818, 1483273815.5);
    // the second value of each item replaces the first
    context.setGpsWeek(1931);
    context.setDate({2016, 12, 31});
    expectTimes(1483228800, 1483833600, 1483187415.5);
    context.setGps2Utc(leap2016); // before the table
    expectTimes(1483228801, 1483833601, 1483187415.5);
    context.setGps2Utc({18, 18, 137, 7});
    expectTimes(1483228800, 1483833600, 1483187415.5);
    // late and early times stay on the day and in the week that are set
    EXPECT_EQ(context.timeOfDayToUnix({23, 59, 60.5}), 1483228800.5);
    EXPECT_EQ(context.timeOfDayToUnix({0, 0, 1}), 1483142401);
    EXPECT_EQ(context.gpsWeekSecondsToUnix(604800 + 18), 1483833600 + 604800);
}

} // namespace
