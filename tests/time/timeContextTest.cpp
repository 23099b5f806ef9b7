#include "kalo/time/timeContext.h"

#include <type_traits>

#include <gtest/gtest.h>

namespace {

using kalo::timeContext_t;

static_assert(!std::is_copy_constructible_v<timeContext_t> &&
              !std::is_copy_assignable_v<timeContext_t>);

constexpr kalo::gps2utc_t leap2016{17, 18, 137, 7};

void expectTimes(const timeContext_t& context, double ofGpsTime, double ofWeekSeconds,
                 double ofTimeOfDay, const char* step) {
    EXPECT_EQ(context.gpsTimeToUnix({1930, 18}), ofGpsTime) << step;
    EXPECT_EQ(context.gpsWeekSecondsToUnix(18), ofWeekSeconds) << step;
    EXPECT_EQ(context.timeOfDayToUnix({12, 30, 15.5}), ofTimeOfDay) << step;
}

TEST(timeContext, convertsWithWhatIsKnown) {
    timeContext_t context;
    expectTimes(context, 1483228800, 0, 0, "nothing known");
    EXPECT_EQ(context.defaultTimestamp(), 0);

    context.setDefaultTimestamp(5);
    expectTimes(context, 1483228800, 0, 0, "default timestamp");
    EXPECT_EQ(context.defaultTimestamp(), 5);

    context.setDate({2017, 1, 1});
    expectTimes(context, 1483228800, 0, 1483273815.5, "date");

    context.setGpsWeek(1930);
    expectTimes(context, 1483228800, 1483228800, 1483273815.5, "week by the table");

    context.setGps2Utc(leap2016);
    expectTimes(context, 1483228801, 1483228801, 1483273815.5, "parameters before the table");

    // the second value of each item replaces the first
    context.setGps2Utc({18, 18, 137, 7});
    expectTimes(context, 1483228800, 1483228800, 1483273815.5, "parameters again");
    context.setGpsWeek(1931);
    expectTimes(context, 1483228800, 1483833600, 1483273815.5, "week again");
    context.setDate({2016, 12, 31});
    expectTimes(context, 1483228800, 1483833600, 1483187415.5, "date again");
    context.setDateFromUnix(1483273815.5); // the time of day is dropped
    expectTimes(context, 1483228800, 1483833600, 1483273815.5, "date from a timestamp");
    context.setDefaultTimestamp(-7.5);
    EXPECT_EQ(context.defaultTimestamp(), -7.5);
}

TEST(timeContext, knowsEachItemByItself) {
    timeContext_t dated;
    dated.setDateFromUnix(1483273815.5);
    expectTimes(dated, 1483228800, 0, 1483273815.5, "date from a timestamp alone");
    timeContext_t week;
    week.setGpsWeek(0); // known, though 0
    expectTimes(week, 1483228800, 315964818, 0, "week alone");
    timeContext_t parameters;
    parameters.setGps2Utc(leap2016);
    expectTimes(parameters, 1483228801, 0, 0, "parameters alone");
}

TEST(timeContext, rollsNothingOver) {
    timeContext_t context;
    context.setDate({2016, 12, 31});
    context.setGpsWeek(1929);
    EXPECT_EQ(context.timeOfDayToUnix({23, 59, 59}), 1483228799);
    EXPECT_EQ(context.timeOfDayToUnix({23, 59, 60.5}), 1483228800.5);
    EXPECT_EQ(context.timeOfDayToUnix({0, 0, 1}), 1483142401); // a day early
    EXPECT_EQ(context.gpsWeekSecondsToUnix(604817), 1483228800);
    EXPECT_EQ(context.gpsWeekSecondsToUnix(1), 1482623984); // a week early
}

} // namespace
