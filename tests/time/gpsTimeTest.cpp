#include "kalo/time/gpsTime.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace {

using kalo::gps2utc_t;
using kalo::gpsTime_t;

constexpr std::uint32_t epoch = 315964800;
constexpr std::uint32_t day = 86400;
constexpr std::uint32_t week = 604800;

// Every leap second: when the first second behind it begins, and GPS minus UTC from then on.
constexpr struct {
    std::uint32_t from;
    std::uint32_t offset;
} leaps[] = {
    {362793600, 1},   {394329600, 2},   {425865600, 3},   {489024000, 4},   {567993600, 5},
    {631152000, 6},   {662688000, 7},   {709948800, 8},   {741484800, 9},   {773020800, 10},
    {820454400, 11},  {867715200, 12},  {915148800, 13},  {1136073600, 14}, {1230768000, 15},
    {1341100800, 16}, {1435708800, 17}, {1483228800, 18},
};

// What a receiver broadcasts before the leap second at `from`: it ends the day before.
gps2utc_t announced(std::uint32_t from, std::uint32_t offset) {
    const std::uint32_t lastDay = from - epoch - day;
    return {offset - 1, offset, lastDay / week % 256, lastDay % week / day + 1};
}

gpsTime_t gpsOf(std::uint32_t count, double fraction) {
    return {count / week, count % week + fraction};
}

// The second before, the inserted one, the one behind it and the next; each also a quarter later.
TEST(gpsTime, crossesEveryLeapSecondByTheTable) {
    for (const auto& leap : leaps) {
        const std::uint32_t after = leap.from - epoch + leap.offset;
        const struct {
            std::uint32_t count, timestamp;
        } cases[] = {{after - 2, leap.from - 1},
                     {after - 1, leap.from},
                     {after, leap.from},
                     {after + 1, leap.from + 1}};
        for (const auto& row : cases) {
            for (const double fraction : {0.0, 0.25}) {
                EXPECT_EQ(gpsOf(row.count, fraction).toUnix(), row.timestamp + fraction)
                    << leap.from << ' ' << row.count;
            }
        }
    }
}

TEST(gpsTime, crossesEveryLeapSecondByParameters) {
    for (const auto& leap : leaps) {
        const gps2utc_t parameters = announced(leap.from, leap.offset);
        const std::uint32_t change = leap.from - epoch;
        const struct {
            std::uint32_t timestamp, count;
        } towards[] = {{leap.from - 1, change + leap.offset - 2}, // one second is left out
                       {leap.from, change + leap.offset},
                       {leap.from + 1, change + leap.offset + 1},
                       {leap.from + 12 * week, change + leap.offset + 12 * week}};
        for (const auto& row : towards) {
            for (const double fraction : {0.0, 0.25}) {
                const gpsTime_t time(row.timestamp + fraction, parameters);
                EXPECT_EQ(time.week, row.count / week) << row.timestamp;
                EXPECT_EQ(time.seconds, row.count % week + fraction) << row.timestamp;
            }
        }
        // Back, the change comes with the GPS day and ends with its week; a day 7 has none.
        const std::uint32_t late = parameters.dn < 7 ? leap.offset : leap.offset - 1;
        const struct {
            std::uint32_t count, offset;
        } back[] = {{change - 1, leap.offset - 1},
                    {change, late},
                    {change + 1, late},
                    {(change - 1) / week * week, leap.offset - 1},
                    {(change - 1) / week * week + week - 1, late},
                    {(change - 1) / week * week + week, leap.offset - 1}};
        for (const auto& row : back) {
            for (const double fraction : {0.0, 0.75}) {
                EXPECT_EQ(gpsOf(row.count, fraction).toUnix(parameters),
                          epoch + row.count - row.offset + fraction)
                    << leap.from << ' ' << row.count;
            }
        }
    }
}

TEST(gpsTime, convertsByTheTable) {
    const struct {
        gpsTime_t time;
        double timestamp;
    } cases[] = {
        {{0, 0}, epoch},
        {{0, 0.5}, epoch + 0.5},
        {{1930, 18}, 1483228800},
        {{3000, 604799.5}, 3001.0 * week + epoch - 18.5},
        {{2999, week + 17.0}, 3000.0 * week + epoch - 1}, // seconds are not reduced
        {{6578, 0}, 6578.0 * week + epoch - 18},
        // outside the span weeks wrap; no number of seconds is undefined
        {{7102, 0}, 7102.0 * week + epoch - 4294967296.0},
        {{4294967295, 1}, epoch - 604799.0},
        {{0, -1e300}, -1e300},
        {{1930, 1e300}, 1e300},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(row.time.toUnix(), row.timestamp) << row.time.week << ':' << row.time.seconds;
    }
}

TEST(gpsTime, convertsByParameters) {
    const gps2utc_t before{17, 18, 137, 7};
    const gps2utc_t after{18, 18, 137, 7};
    const gps2utc_t midweek{17, 18, 250, 3};
    const struct {
        gpsTime_t time;
        gps2utc_t parameters;
        double timestamp;
    } cases[] = {
        {{1930, 18}, before, 1483228801},
        {{1930, 18}, after, 1483228800},
        {{1929, 604799.75}, before, 1483228782.75},
        {{1929, 604800}, before, 1483228782}, // day 7 of the week before
        {{2042, 259199.5}, midweek, 2042.0 * week + epoch + 259199.5 - 17},
        {{2042, 259200}, midweek, 2042.0 * week + epoch + 259200 - 18},
        {{2043, 259200}, midweek, 2043.0 * week + epoch + 259200 - 17},
        {{300, 0}, {17, 18, 300, 0}, 300.0 * week + epoch - 17}, // no week modulo 256
        {{0, 1e300}, before, 1e300},
        {{0, 0}, {4294967295, 0, 1, 1}, epoch - 4294967295.0},
        {{0, 1e9}, {0, 5, 0, 4294967295}, epoch + 1e9},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(row.time.toUnix(row.parameters), row.timestamp)
            << row.time.week << ':' << row.time.seconds;
    }
}

TEST(gpsTime, isMadeFromTimestamps) {
    const gps2utc_t leap2016{17, 18, 137, 7};
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const struct {
        double timestamp;
        gps2utc_t parameters;
        gpsTime_t time;
    } cases[] = {
        {1483228799.25, leap2016, {1930, 16.25}},
        {1483228800.0, leap2016, {1930, 18}},
        {1483228782.875, leap2016, {1929, 604799.875}}, // the week ends before the day does
        {1483228783.0, leap2016, {1930, 0}},
        {epoch + 256.0 * week - 1, {0, 5, 0, 1}, {256, 4}},
        {epoch + 256.0 * week, {0, 5, 0, 1}, {256, 0}}, // the cycle begins again
        {epoch, {}, {0, 0}},
        // outside the span: modulo 2^32, and what is not finite counts as 0
        {epoch - 0.5, {}, {7101, 282495.5}},
        {epoch + 4294967296.0, {}, {0, 0}},
        {epoch + 1.0, {4294967295, 0, 1, 1}, {0, 0}},
        {0, {}, {6579, 23296}},
        {-1.5, {}, {6579, 23294.5}},
        {1e300, {}, {6579, 23296}},
        {-1e300, {}, {6579, 23296}},
        {infinity, {}, {6579, 23296}},
        {-infinity, {}, {6579, 23296}},
        {std::nan(""), {}, {6579, 23296}},
    };
    for (const auto& row : cases) {
        const gpsTime_t time(row.timestamp, row.parameters);
        EXPECT_EQ(time.week, row.time.week) << row.timestamp;
        EXPECT_EQ(time.seconds, row.time.seconds) << row.timestamp;
    }
    EXPECT_EQ(gpsTime_t(1, infinity).toUnix(), infinity);
    EXPECT_TRUE(std::isnan(gpsTime_t(1, std::nan("")).toUnix()));
    EXPECT_TRUE(std::isnan(gpsTime_t(137, std::nan("")).toUnix(leap2016)));
}

TEST(gpsTime, goesThereAndBack) {
    for (const auto& leap : leaps) {
        const gps2utc_t settled{leap.offset, leap.offset, 3, 4};
        for (std::uint32_t second = 0; second < 26 * week; second += 12345) {
            const double timestamp = leap.from + second + 0.125;
            const gpsTime_t time(timestamp, settled);
            ASSERT_LT(time.seconds, week);
            ASSERT_EQ(time.toUnix(settled), timestamp);
            ASSERT_EQ(time.toUnix(), timestamp);
        }
    }
}

} // namespace
