// Separate objects may be used from separate threads, and views of one framed sentence read from
// several: the thread sanitizer watches this test.
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "kalo/kalo.h"
#include "tests/sentence.h"

namespace {

constexpr int threadCount = 4;

// A number that depends on everything that was decoded.
double decodeAll(const std::vector<std::string>& lines) {
    kalo::nmeaFormat_t format;
    kalo::gsvSet_t satellites;
    kalo::timeContext_t context;
    kalo::tss1Msg_t motion;
    double sum = 0;
    for (const std::string& line : lines) {
        format.init(line.data(), line.size());
        motion.init(line.data(), line.size());
        sum += motion.roll + static_cast<double>(format.fieldCount());
        const std::unique_ptr<kalo::nmeaMsg_t> view(kalo::nmeaMsg_t::create(format));
        kalo::timeOfDay_t time;
        kalo::date_t date;
        if (view != nullptr && view->decodeDate(date)) {
            context.setDate(date);
        }
        if (view != nullptr && view->decodeTimeOfDay(time)) {
            sum += kalo::dateTime_t(context.timeOfDayToUnix(time)).timeOfDay.second;
        }
        if (const auto* gsv = dynamic_cast<const kalo::gsvMsg_t*>(view.get())) {
            satellites.decode(*gsv);
            sum += static_cast<double>(satellites.sats().size());
        }
    }
    return sum;
}

/// What `action` gives in each of several threads at once.
template <typename Action>
auto inThreads(Action action) {
    std::vector<decltype(action())> results(threadCount);
    std::vector<std::thread> threads;
    for (auto& result : results) {
        threads.emplace_back([&] { result = action(); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return results;
}

TEST(threads, decodeApart) {
    std::ifstream file(KALO_EXAMPLES "/recordings/voyage.log", std::ios::binary);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line + '\n');
    }
    ASSERT_GT(lines.size(), 1000U);
    EXPECT_EQ(inThreads([&] { return decodeAll(lines); }),
              std::vector<double>(threadCount, decodeAll(lines)));
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
    EXPECT_EQ(inThreads(read), std::vector<int>(threadCount, 1000));
}

} // namespace
