#include "kalo/time/dateTime.h"

#include <cmath>
#include <ctime>
#include <limits>

#include <gtest/gtest.h>

#include "kalo/time/timeUtil.h"

namespace kalo {

// GoogleTest finds it by the type's namespace.
static void PrintTo(const dateTime_t& value, std::ostream* out) {
    *out << value.date.year << '-' << value.date.month << '-' << value.date.day << ' '
         << value.timeOfDay.hour << ':' << value.timeOfDay.minute << ':' << value.timeOfDay.second;
}

static bool operator==(const dateTime_t& a, const dateTime_t& b) {
    return a.date.year == b.date.year && a.date.month == b.date.month && a.date.day == b.date.day &&
           a.timeOfDay.hour == b.timeOfDay.hour && a.timeOfDay.minute == b.timeOfDay.minute &&
           a.timeOfDay.second == b.timeOfDay.second;
}

} // namespace kalo

namespace {

using kalo::dateTime_t;

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(dateTime, breaksTimestampsDown) {
    const struct {
        double timestamp;
        dateTime_t expected;
    } cases[] = {
        {0.0, {{1970, 1, 1}, {0, 0, 0}}},
        {1483228800.25, {{2017, 1, 1}, {0, 0, 0.25}}},
        {951782399.5, {{2000, 2, 28}, {23, 59, 59.5}}},
        {951782400.0, {{2000, 2, 29}, {0, 0, 0}}},
        {4107542399.0, {{2100, 2, 28}, {23, 59, 59}}},
        {4107542400.0, {{2100, 3, 1}, {0, 0, 0}}},
        {253402300799.0, {{9999, 12, 31}, {23, 59, 59}}},
        // before 1970 the fraction is negative
        {-0.5, {{1970, 1, 1}, {0, 0, -0.5}}},
        {-1.5, {{1969, 12, 31}, {23, 59, 58.5}}},
        // beyond what a date can name
        {-1e300, {{0, 1, 1}, {0, 0, 0}}},
        {1e300, {{4294967295, 12, 31}, {23, 59, 59}}},
        {infinity, {{1970, 1, 1}, {0, 0, infinity}}},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(dateTime_t(row.timestamp), row.expected) << row.timestamp;
        if (std::fabs(row.timestamp) < 1e300 || std::isinf(row.timestamp)) {
            EXPECT_EQ(row.expected.toTimestamp(), row.timestamp);
        }
    }
    EXPECT_TRUE(std::isnan(dateTime_t(std::nan("")).toTimestamp()));
}

TEST(dateTime, carriesFieldsOutOfRange) {
    const struct {
        dateTime_t value;
        double timestamp;
    } cases[] = {
        {{{2016, 12, 31}, {23, 59, 60.5}}, 1483228800.5}, // an inserted leap second
        {{{2016, 12, 31}, {23, 60, 0}}, 1483228800},
        {{{2016, 12, 31}, {24, 0, 0}}, 1483228800},
        {{{2017, 1, 0}, {24, 0, 0}}, 1483228800},
        {{{2016, 13, 1}, {0, 0, 0}}, 1483228800},
        {{{2017, 0, 31}, {24, 0, 0}}, 1483228800},
        {{{2019, 2, 29}, {0, 0, 0}}, 1551398400}, // March 1st
        {{{2017, 1, 1}, {0, 0, 3600}}, 1483232400},
        {{{0, 0, 0}, {0, 0, 0}}, -62169984000},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(row.value.toTimestamp(), row.timestamp) << testing::PrintToString(row.value);
    }
    // Nothing that the members can hold is undefined.
    constexpr std::uint32_t most = std::numeric_limits<std::uint32_t>::max();
    EXPECT_GT(dateTime_t({most, most, most}, {most, most, 1e300}).toTimestamp(), 1e299);
    EXPECT_LT(dateTime_t({most, most, most}, {most, most, -1e300}).toTimestamp(), -1e299);
}

// The platform's conversion, which the time zone does not touch, is the oracle.
TEST(dateTime, agreesWithThePlatformEverySingleDay) {
    for (std::time_t day = 0; day < 2932897; ++day) { // up to 9999-12-31
        const std::time_t seconds = day * 86400 + day % 86400;
        std::tm fields{};
        ASSERT_NE(gmtime_r(&seconds, &fields), nullptr);
        const dateTime_t value(static_cast<double>(seconds));
        ASSERT_EQ(value, dateTime_t({static_cast<unsigned>(fields.tm_year + 1900),
                                     static_cast<unsigned>(fields.tm_mon + 1),
                                     static_cast<unsigned>(fields.tm_mday)},
                                    {static_cast<unsigned>(fields.tm_hour),
                                     static_cast<unsigned>(fields.tm_min),
                                     static_cast<double>(fields.tm_sec)}));
        ASSERT_EQ(value.toTimestamp(), static_cast<double>(seconds));
    }
}

// Holds under any clock: the whole test runs again at other dates.
TEST(timeUtil, completesTwoDigitYears) {
    const std::time_t now = std::time(nullptr);
    std::tm fields{};
    gmtime_r(&now, &fields);
    const auto century = static_cast<unsigned>((fields.tm_year + 1900) / 100 * 100);
    EXPECT_EQ(kalo::currentCentury(), century);
    const struct {
        unsigned year;
        unsigned cutoff;
        unsigned expected;
    } cases[] = {
        {0, kalo::defaultTwoDigitYearCutoff, century},
        {69, kalo::defaultTwoDigitYearCutoff, century + 69},
        {70, kalo::defaultTwoDigitYearCutoff, century - 30},
        {99, kalo::defaultTwoDigitYearCutoff, century - 1},
        {100, kalo::defaultTwoDigitYearCutoff, 100},
        {2024, 0, 2024},
        {5, 0, century - 95},
        {99, 100, century + 99},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(kalo::twoDigitYearToAD(row.year, row.cutoff), row.expected)
            << row.year << ' ' << row.cutoff;
    }
}

} // namespace
