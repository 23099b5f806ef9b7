// When records came, and what step between two of them is usual.
#include "tools/report/presenceTimes.h"

#include <gtest/gtest.h>

namespace {

TEST(presenceTimes, usualStepIsThatOfNearlyAll) {
    for (const double step : {0.01, 0.1, 1.0, 7.0, 100.0, 3600.0}) {
        presenceTimes_t times;
        for (unsigned i = 0; i < 200; ++i) {
            times.add(i * step + (i > 100 ? 50 * step : 0));
        }
        EXPECT_GE(times.usualStep(), step);
        EXPECT_LE(times.usualStep(), 1.26 * step)
            << step; // it is kept in quarters of a power of two
    }
}

} // namespace
