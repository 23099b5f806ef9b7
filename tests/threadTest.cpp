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

// A number that depends on everything that was decoded.
double decodeAll(const std::vector<std::string>& lines) {
    kalo::nmeaFormat_t format;
    kalo::gsvSet_t satellites;
    double sum = 0;
    for (const std::string& line : lines) {
        format.init(line.data(), line.size());
        const std::unique_ptr<kalo::nmeaMsg_t> view(kalo::nmeaMsg_t::create(format));
        kalo::timeOfDay_t time;
        if (view != nullptr && view->decodeTimeOfDay(time)) {
            sum += time.second;
        }
        if (const auto* gsv = dynamic_cast<const kalo::gsvMsg_t*>(view.get())) {
            sum += satellites.decode(*gsv) ? static_cast<double>(satellites.sats().size()) : 0;
        }
    }
    return sum;
}

/// Calls `action` in several threads at once. Each has to give `expected`.
template <typename Action, typename Result>
void checkThreads(Action action, Result expected) {
    std::vector<Result> results(4);
    std::vector<std::thread> threads;
    for (Result& result : results) {
        threads.emplace_back([&] { result = action(); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(results, std::vector<Result>(4, expected));
}

TEST(threads, decodeApart) {
    std::ifstream file(KALO_EXAMPLES "/recordings/voyage.log", std::ios::binary);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line + '\n');
    }
    ASSERT_GT(lines.size(), 1000U);
    checkThreads([&] { return decodeAll(lines); }, decodeAll(lines));
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
