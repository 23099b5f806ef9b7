// Many values over time, in few intervals.
#include "tools/report/intervals.h"

#include <gtest/gtest.h>

namespace {

// A value for each second of some blocks, an hour between two blocks; the values count up.
intervals_t blocksOf(unsigned blocks, unsigned secondsOfBlock, std::size_t most) {
    intervals_t intervals(most);
    for (unsigned i = 0; i < blocks * secondsOfBlock; ++i) {
        intervals.add(i / secondsOfBlock * 3600.0 + i % secondsOfBlock, i);
        EXPECT_LE(intervals.all().size(), most);
    }
    return intervals;
}

TEST(intervals, gapsAreKeptWhileThereIsRoom) {
    const intervals_t intervals = blocksOf(20, 120, 100);
    EXPECT_GE(intervals.all().size(), 50U);
    for (const interval_t& interval : intervals.all()) {
        EXPECT_LT(interval.last - interval.first, 120) << interval.first;
        EXPECT_EQ(interval.greatest - interval.least, interval.last - interval.first);
        EXPECT_EQ(interval.count, interval.last - interval.first + 1);
    }
}

TEST(intervals, gapsAreJoinedWhenThereAreTooMany) {
    const intervals_t intervals = blocksOf(400, 40, 100);
    std::uint64_t count = 0;
    double nextValue = 0;
    for (const interval_t& interval : intervals.all()) {
        EXPECT_EQ(interval.least, nextValue);
        nextValue = interval.greatest + 1;
        count += interval.count;
    }
    EXPECT_EQ(count, 16000U);
    EXPECT_EQ(nextValue, 16000);
    EXPECT_EQ(intervals.count(), 16000U);
    EXPECT_GE(intervals.all().size(), 50U);
}

} // namespace
