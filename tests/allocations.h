// Counts allocations and lets one fail. A program that links tests/allocations.cpp has its own
// operators new and delete.
#pragma once

#include <new>

#include <gtest/gtest.h>

namespace allocations {

extern long made;         ///< so far
extern long live;         ///< not freed yet
extern long untilFailure; ///< the last of so many to come fails; 0: none

/// How many allocations `action` makes.
template <typename Action>
long of(Action action) {
    const long before = made;
    action();
    return made - before;
}

/// Calls `use(fail)` until no allocation is left to fail: in each call the next allocation of the
/// action that `use` hands to `fail` fails. `fail` gives whether that ended the action, by the
/// allocator's exception; any other ends the test. Nothing may be lost, and at least `least`
/// allocations have to have failed.
template <typename Use>
void failEach(long least, Use use) {
    bool failed = true;
    long number = 0;
    while (failed) {
        const long before = live;
        ++number;
        use([&](auto action) {
            bool isThrown = false;
            untilFailure = number;
            try {
                action();
            } catch (const std::bad_alloc&) {
                isThrown = true;
            }
            failed = untilFailure == 0;
            untilFailure = 0;
            return isThrown;
        });
        EXPECT_EQ(live, before) << number;
        EXPECT_TRUE(failed || number > least) << number;
    }
}

} // namespace allocations
