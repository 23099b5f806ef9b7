#include "kalo/time/dateTime.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <ctime>
#include <limits>
#include <tuple>

#include <gtest/gtest.h>

#include "kalo/time/timeUtil.h"

namespace {

using kalo::dateTime_t;

constexpr double never = std::numeric_limits<double>::infinity();

auto members(const dateTime_t& value) {
    const auto& [date, time] = value;
    return std::make_tuple(date.year, date.month, date.day, time.hour, time.minute, time.second);
}

TEST(dateTime, breaksTimestampsDown) {
    const struct {
        double timestamp;
        dateTime_t expected;
    } cases[] = {
        {1483228800.25, {{2017, 1, 1}, {0, 0, 0.25}}},
        {951782399.5, {{2000, 2, 28}, {23, 59, 59.5}}},
        // before 1970 the fraction is negative
        {-0.5, {{1970, 1, 1}, {0, 0, -0.5}}},
        {-1.5, {{1969, 12, 31}, {23, 59, 58.5}}},
        // beyond what a date can name
        {-1e300, {{0, 1, 1}, {0, 0, 0}}},
        {1e300, {{4294967295, 12, 31}, {23, 59, 59}}},
        {never, {{1970, 1, 1}, {0, 0, never}}},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(members(dateTime_t(row.timestamp)), members(row.expected)) << row.timestamp;
        if (std::fabs(row.timestamp) != 1e300) {
            EXPECT_EQ(row.expected.toTimestamp(), row.timestamp);
        }
    }
    EXPECT_TRUE(std::isnan(dateTime_t(std::nan("")).toTimestamp()));
}

TEST(dateTime, carriesFieldsOutOfRange) {
    const auto timestamp = [](const kalo::date_t& date, const kalo::timeOfDay_t& time) {
        return dateTime_t(date, time).toTimestamp();
    };
    EXPECT_EQ(timestamp({2016, 12, 31}, {23, 59, 60.5}), 1483228800.5); // a leap second
    EXPECT_EQ(timestamp({2016, 13, 0}, {23, 60, 0}), 1483228800);
    EXPECT_EQ(timestamp({2017, 0, 31}, {24, 0, 0}), 1483228800);
    EXPECT_EQ(timestamp({2019, 2, 29}, {0, 0, 0}), 1551398400); // March 1st
    EXPECT_EQ(timestamp({0, 0, 0}, {0, 0, 0}), -62169984000);
    // nothing that the members can hold is undefined
    constexpr std::uint32_t most = std::numeric_limits<std::uint32_t>::max();
    EXPECT_GT(timestamp({most, most, most}, {most, most, 1e300}), 1e299);
    EXPECT_LT(timestamp({most, most, most}, {most, most, -1e300}), -1e299);
}

// The platform's conversion, which the time zone does not touch, is the oracle.
TEST(dateTime, agreesWithThePlatformEverySingleDay) {
    constexpr std::int64_t days = std::min<std::int64_t>(
        2932897, std::numeric_limits<std::time_t>::max() / 86400); // up to 9999-12-31 or 2038-01-18
    for (std::int64_t day = 0; day < days; ++day) {
        const auto seconds = static_cast<std::time_t>(day * 86400 + day % 86400);
        std::tm tm{};
        ASSERT_NE(gmtime_r(&seconds, &tm), nullptr);
        const dateTime_t value(static_cast<double>(seconds));
        ASSERT_EQ(members(value), std::make_tuple(tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday,
                                                  tm.tm_hour, tm.tm_min, tm.tm_sec));
        ASSERT_EQ(value.toTimestamp(), static_cast<double>(seconds));
    }
}

// Holds under any clock: the whole test runs again at other dates.
TEST(timeUtil, completesTwoDigitYears) {
    const std::time_t now = std::time(nullptr);
    std::tm tm{};
    gmtime_r(&now, &tm);
    const auto century = static_cast<unsigned>((tm.tm_year + 1900) / 100 * 100);
    EXPECT_EQ(kalo::currentCentury(), century);
    constexpr unsigned usual = kalo::defaultTwoDigitYearCutoff;
    const struct {
        unsigned year, cutoff, expected;
    } cases[] = {{0, usual, century},      {69, usual, century + 69}, {70, usual, century - 30},
                 {99, usual, century - 1}, {100, usual, 100},         {2024, 0, 2024},
                 {5, 0, century - 95},     {99, 100, century + 99}};
    for (const auto& row : cases) {
        EXPECT_EQ(kalo::twoDigitYearToAD(row.year, row.cutoff), row.expected) << row.year;
    }
}

} // namespace
