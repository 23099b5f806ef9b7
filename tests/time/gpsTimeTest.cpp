#include "kalo/time/gpsTime.h"
#include "kalo/time/timeContext.h"

#include <cmath>
#include <limits>
#include <tuple>
#include <type_traits>

#include <gtest/gtest.h>

namespace {

using kalo::gps2utc_t;
using kalo::gpsTime_t;

constexpr std::uint32_t epoch = 315964800, day = 86400, week = 604800;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr gps2utc_t leap2016{17, 18, 137, 7};

// When the first second behind each leap second begins; GPS minus UTC is 1, 2, ... from then on.
constexpr std::uint32_t leaps[] = {362793600,  394329600,  425865600, 489024000,  567993600,
                                   631152000,  662688000,  709948800, 741484800,  773020800,
                                   820454400,  867715200,  915148800, 1136073600, 1230768000,
                                   1341100800, 1435708800, 1483228800};

gpsTime_t gpsOf(std::uint32_t count, double fraction) {
    return {count / week, count % week + fraction};
}

TEST(gpsTime, crossesEveryLeapSecondBothWays) {
    for (std::uint32_t offset = 1; offset <= std::size(leaps); ++offset) {
        const std::uint32_t from = leaps[offset - 1], change = from - epoch;
        // what a receiver broadcasts before: the leap second ends the day before
        const std::uint32_t lastDay = change - day;
        const gps2utc_t parameters{offset - 1, offset, lastDay / week % 256,
                                   lastDay % week / day + 1};
        // Back by parameters, the change comes with the GPS day and ends with its week; a day 7
        // has none.
        const std::uint32_t late = parameters.dn < 7 ? offset : offset - 1;
        const std::uint32_t weekBegin = (change - 1) / week * week;
        const struct {
            std::uint32_t count, timestamp;
        } byTable[] = {{change + offset - 2, from - 1}, // the second before, the inserted one
                       {change + offset - 1, from},     // and what follows
                       {change + offset, from},
                       {change + offset + 1, from + 1},
                       {change + offset + 9 * week, from + 9 * week}},
          towards[] = {{change + offset - 2, from - 1}, // one second is left out
                       {change + offset, from},
                       {change + offset + 1, from + 1},
                       {change + offset + 12 * week, from + 12 * week}},
          back[] = {{change - 1, from - offset},
                    {change, from - late},
                    {change + 1, from + 1 - late},
                    {weekBegin, epoch + weekBegin + 1 - offset},
                    {weekBegin + week - 1, epoch + weekBegin + week - 1 - late},
                    {weekBegin + week, epoch + weekBegin + week + 1 - offset}};
        for (const double fraction : {0.0, 0.75}) {
            for (const auto& row : byTable) {
                EXPECT_EQ(gpsOf(row.count, fraction).toUnix(), row.timestamp + fraction) << from;
            }
            for (const auto& row : towards) {
                const gpsTime_t time(row.timestamp + fraction, parameters);
                EXPECT_EQ(time.week, row.count / week) << row.timestamp;
                EXPECT_EQ(time.seconds, row.count % week + fraction) << row.timestamp;
            }
            for (const auto& row : back) {
                EXPECT_EQ(gpsOf(row.count, fraction).toUnix(parameters), row.timestamp + fraction)
                    << from << ' ' << row.count;
            }
        }
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
                 {{1, infinity}, infinity}};
    for (const auto& row : cases) {
        EXPECT_EQ(row.time.toUnix(), row.timestamp) << row.time.week << ':' << row.time.seconds;
    }
    EXPECT_TRUE(std::isnan(gpsTime_t(1, std::nan("")).toUnix()));
}

TEST(gpsTime, convertsByParameters) {
    const gps2utc_t midweek{17, 18, 250, 3};
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
                 {epoch + 256.0 * week - 1, {0, 5, 0, 1}, {256, 4}},
                 {epoch + 256.0 * week, {0, 5, 0, 1}, {256, 0}}, // the cycle begins again
                 // outside the span: modulo 2^32, and what is not finite counts as 0
                 {epoch - 0.5, {}, {7101, 282495.5}},
                 {epoch + 4294967296.0, {}, {0, 0}},
                 {epoch + 1.0, {4294967295, 0, 1, 1}, {0, 0}},
                 {-1.5, {}, {6579, 23294.5}},
                 {1e300, {}, {6579, 23296}},
                 {-1e300, {}, {6579, 23296}},
                 {infinity, {}, {6579, 23296}},
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

// Of one GPS time, one second of the week, and one time of day.
auto times(const timeContext_t& context) {
    return std::make_tuple(context.gpsTimeToUnix({1930, 18}), context.gpsWeekSecondsToUnix(18),
                           context.timeOfDayToUnix({12, 30, 15.5}));
}

TEST(timeContext, convertsWithWhatIsKnown) {
    timeContext_t context, parameters;
    EXPECT_EQ(context.defaultTimestamp(), 0);
    context.setDefaultTimestamp(5);
    EXPECT_EQ(context.defaultTimestamp(), 5);
    EXPECT_EQ(times(context), std::make_tuple(1483228800, 0, 0));
    context.setGpsWeek(0); // known, though 0
    EXPECT_EQ(times(context), std::make_tuple(1483228800, 315964818, 0));
    context.setDateFromUnix(1483273815.5); // the time of day is dropped
    EXPECT_EQ(times(context), std::make_tuple(1483228800, 315964818, 1483273815.5));
    // the second value of each item replaces the first
    context.setGpsWeek(1931);
    context.setDate({2016, 12, 31});
    EXPECT_EQ(times(context), std::make_tuple(1483228800, 1483833600, 1483187415.5));
    context.setGps2Utc(leap2016); // before the table
    EXPECT_EQ(times(context), std::make_tuple(1483228801, 1483833601, 1483187415.5));
    context.setGps2Utc({18, 18, 137, 7});
    EXPECT_EQ(times(context), std::make_tuple(1483228800, 1483833600, 1483187415.5));
    parameters.setGps2Utc(leap2016);
    EXPECT_EQ(times(parameters), std::make_tuple(1483228801, 0, 0));
}

// Late and early times stay on the day and in the week that are set.
TEST(timeContext, rollsNothingOver) {
    timeContext_t context;
    context.setDate({2016, 12, 31});
    context.setGpsWeek(1929);
    EXPECT_EQ(context.timeOfDayToUnix({23, 59, 60.5}), 1483228800.5);
    EXPECT_EQ(context.timeOfDayToUnix({0, 0, 1}), 1483142401);
    EXPECT_EQ(context.gpsWeekSecondsToUnix(604817), 1483228800);
    EXPECT_EQ(context.gpsWeekSecondsToUnix(1), 1482623984);
}

} // namespace
