// Separate objects may be used from separate threads, and views of one framed sentence read from
// several: the thread sanitizer watches this test.
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/isolation/decodeAll.h"
#include "tests/sentence.h"

namespace {

constexpr std::size_t threadCount = 8;

/// Calls `action` in several threads at once. Each has to give `expected`.
template <typename Action, typename Result>
void checkThreads(Action action, Result expected) {
    std::vector<Result> results(threadCount);
    std::vector<std::thread> threads;
    for (Result& result : results) {
        threads.emplace_back([&] { result = action(); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(results, std::vector<Result>(threadCount, expected));
}

TEST(threads, decodeApart) {
    const std::string log = sampleLog();
    const digests_t alone = decodeAll_t()(log);
    ASSERT_GT(alone.size(), 20U);
    checkThreads([&] { return decodeAll_t()(log); }, alone);
}

TEST(threads, readOneSentence) {
    const kalo::nmeaFormat_t format = framed("$GPZDA,235830.25,14,03,2026,-05,30");
    const auto read = [&] {
        int right = 0;
        for (int i = 0; i < 1000; ++i) {
            const kalo::zdaMsg_t view(format);
            kalo::date_t date;
            int offset = 0;
            right += view.decodeDate(date) && date.year == 2026 && view.decodeLocalOffset(offset) &&
                     offset == -330;
        }
        return right;
    };
    checkThreads(read, 1000);
}

} // namespace
