// What the library allocates and frees, and what is left when an allocation fails. The operators
// below count, so this is a program of its own.
#include <cstdlib>
#include <fstream>
#include <memory>
#include <new>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "kalo/kalo.h"
#include "tests/sentence.h"
#include "tools/recordTable.h"

namespace {

long allocations = 0;
long live = 0;
long untilFailure = 0; // 0: none fails

void* allocate(std::size_t size) {
    if (untilFailure > 0 && --untilFailure == 0) {
        throw std::bad_alloc();
    }
    void* memory = std::malloc(size != 0 ? size : 1);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    ++allocations;
    ++live;
    return memory;
}

void release(void* memory) {
    live -= memory != nullptr ? 1 : 0;
    std::free(memory);
}

} // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void operator delete(void* memory) noexcept { release(memory); }
void operator delete[](void* memory) noexcept { release(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { release(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { release(memory); }

namespace {

using kalo::gsvMsg_t;
using kalo::nmeaFormat_t;
using kalo::nmeaMsg_t;

/// How many allocations `action` makes.
template <typename Action>
long allocationsOf(Action action) {
    const long before = allocations;
    action();
    return allocations - before;
}

/// The sentences of the shipped recording that are well formed.
std::vector<std::string> recordedSentences() {
    std::ifstream file(KALO_EXAMPLES "/recordings/voyage.log", std::ios::binary);
    std::vector<std::string> sentences;
    for (std::string line; std::getline(file, line);) {
        line += '\n';
        if (nmeaFormat_t(line.data(), line.size()).isValid()) {
            sentences.push_back(line);
        }
    }
    return sentences;
}

TEST(memory, framingAgainAllocatesNothing) {
    const std::vector<std::string> sentences = recordedSentences();
    ASSERT_GT(sentences.size(), 900U);
    const long before = live;
    {
        nmeaFormat_t format;
        const auto frameAll = [&] {
            for (const std::string& text : sentences) {
                format.init(text.data(), text.size());
            }
        };
        EXPECT_GT(allocationsOf(frameAll), 0);
        EXPECT_EQ(allocationsOf(frameAll), 0);
        const nmeaFormat_t copy = format;
        EXPECT_GT(allocationsOf([&] { static_cast<void>(nmeaFormat_t(copy)); }), 0);
        EXPECT_EQ(allocationsOf([&] { format = copy; }), 0);
    }
    EXPECT_EQ(live, before);
}

TEST(memory, decodingAllocatesTheViewAlone) {
    const long before = live;
    {
        std::set<int> types;
        for (const std::string& text : recordedSentences()) {
            const nmeaFormat_t format(text.data(), text.size());
            std::unique_ptr<nmeaMsg_t> view;
            const long made = allocationsOf([&] { view.reset(nmeaMsg_t::create(format)); });
            EXPECT_EQ(made, view != nullptr ? 1 : 0) << text;
            if (view == nullptr) {
                continue;
            }
            types.insert(view->type());
            source_t source;
            source.sentence = view.get();
            for (const valueRow_t& row : *sentenceType(view->type())) {
                bool isList = false; // every text of the recording is short
                const long count = allocationsOf([&] {
                    const value_t value = row.read(source);
                    isList = std::holds_alternative<std::vector<unsigned>>(value) ||
                             std::holds_alternative<std::vector<satellite_t>>(value);
                });
                EXPECT_TRUE(count == 0 || isList) << row.name << ": " << text;
            }
        }
        EXPECT_EQ(types.size(), 23U); // all that have a view
    }
    EXPECT_EQ(live, before);
}

TEST(memory, listsAllocateForTheirEntriesAlone) {
    const nmeaFormat_t gsa = framed("$GPGSA,A,3,02,05,07,12,15,25,29,30,31,32,33,34,1,2,3,1");
    std::vector<unsigned> ids;
    ids.reserve(12);
    EXPECT_EQ(allocationsOf([&] { kalo::gsaMsg_t(gsa).decodeSatIds(ids); }), 0);
    EXPECT_EQ(ids.size(), 12U);
    const nmeaFormat_t gsv = framed("$GPGSV,1,1,03,02,65,211,47,05,43,142,44,07,14,077,,1");
    kalo::gsvSet_t set;
    EXPECT_EQ(allocationsOf([&] { set.decode(gsvMsg_t(gsv)); }), 3); // an entry a satellite
    EXPECT_TRUE(set.isComplete());
}

/// Runs `action` with its allocation number `number` failing; whether it came to that.
template <typename Action>
bool failing(long number, Action action) {
    untilFailure = number;
    try {
        action();
    } catch (const std::bad_alloc&) {
    } // anything else ends the test
    const bool failed = untilFailure == 0;
    untilFailure = 0;
    return failed;
}

const std::string longTexts =
    sentence("$PSIMSSB,123519.00,a beacon with a long name 12345,a status of many letters,E,C,N,M,"
             "10.5,-3.0,2.0,0.5,N,,,and,more,fields,than,most,others,have");

void expectUsable(nmeaFormat_t& format) {
    EXPECT_TRUE(format.init(longTexts.data(), longTexts.size()));
    EXPECT_EQ(format.type(), kalo::msgTypePsimSsb);
    EXPECT_EQ(format.fieldCount(), 22U);
    EXPECT_TRUE(*format.field(3) == "a status of many letters" && *format.field(21) == "have");
}

// Each action says whether its allocation `number` failed; what it makes is gone afterwards.
const struct {
    const char* name;
    long allocations; // at least
    bool (*action)(long number);
} failures[] = {
    {"framing", 4,
     [](long number) {
         return failing(number, [] { nmeaFormat_t(longTexts.data(), longTexts.size()); });
     }},
    {"framing again", 2,
     [](long number) {
         const std::string before = sentence("$GPHDT,1,T");
         nmeaFormat_t format(before.data(), before.size());
         const bool failed =
             failing(number, [&] { format.init(longTexts.data(), longTexts.size()); });
         EXPECT_EQ(format.isValid(), !failed) << number;
         EXPECT_EQ(format.type(), failed ? kalo::msgTypeUnknown : kalo::msgTypePsimSsb) << number;
         EXPECT_EQ(format.fieldCount(), failed ? 0U : 22U) << number;
         expectUsable(format);
         return failed;
     }},
    {"more fields than are reserved", 2,
     [](long number) {
         const std::string many = sentence("$GPXYZ" + std::string(60, ','));
         nmeaFormat_t format;
         const bool failed = failing(number, [&] { format.init(many.data(), many.size()); });
         EXPECT_EQ(format.fieldCount(), failed ? 0U : 61U) << number;
         expectUsable(format);
         return failed;
     }},
    {"copy", 4,
     [](long number) {
         nmeaFormat_t format(longTexts.data(), longTexts.size());
         const bool failed = failing(number, [&] { static_cast<void>(nmeaFormat_t(format)); });
         EXPECT_TRUE(format.isValid() && *format.field(21) == "have");
         return failed;
     }},
    {"assignment", 2,
     [](long number) {
         const nmeaFormat_t format(longTexts.data(), longTexts.size());
         nmeaFormat_t target = framed("$GPHDT,1,T");
         const bool failed = failing(number, [&] { target = format; });
         EXPECT_EQ(target.isValid(), !failed) << number;
         EXPECT_EQ(target.fieldCount(), failed ? 0U : 22U) << number;
         target = format;
         EXPECT_TRUE(target.isValid() && *target.field(21) == "have");
         expectUsable(target);
         return failed;
     }},
    {"create", 1,
     [](long number) {
         const nmeaFormat_t format(longTexts.data(), longTexts.size());
         return failing(number, [&] { delete nmeaMsg_t::create(format); });
     }},
    {"set", 1, [](long number) { return failing(number, [] { kalo::gsvSet_t(); }); }},
    {"set filled", 2,
     [](long number) {
         const nmeaFormat_t one = framed("$GPGSV,2,1,4,1,10,20,30,2,10,20,30");
         const nmeaFormat_t two = framed("$GPGSV,2,2,4,3,10,20,30,4,10,20,30");
         kalo::gsvSet_t set;
         set.decode(gsvMsg_t(one));
         const bool failed = failing(number, [&] { set.decode(gsvMsg_t(two)); });
         EXPECT_NE(set.isComplete(), failed) << number;
         EXPECT_EQ(set.decode(gsvMsg_t(two)), failed) << number; // the sentence once more
         EXPECT_TRUE(set.isComplete()) << number;
         EXPECT_EQ(set.sats().size(), 4U) << number;
         return failed;
     }},
    {"context", 1, [](long number) { return failing(number, [] { kalo::timeContext_t(); }); }},
};

TEST(memory, everyAllocationMayFail) {
    for (const auto& row : failures) {
        long number = 0;
        bool failed = true;
        while (failed) {
            const long before = live;
            failed = row.action(++number);
            EXPECT_EQ(live, before) << row.name << ' ' << number;
        }
        EXPECT_GT(number, row.allocations) << row.name;
    }
}

} // namespace
