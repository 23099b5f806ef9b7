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
#include "tools/record/registry.h"

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
    nmeaFormat_t format;
    const auto frameAll = [&] {
        for (const std::string& text : sentences) {
            format.init(text.data(), text.size());
        }
    };
    EXPECT_GT(allocationsOf(frameAll), 0);
    EXPECT_EQ(allocationsOf(frameAll), 0);
    const nmeaFormat_t copy = format;
    EXPECT_EQ(allocationsOf([&] { format = copy; }), 0);
}

/// A sink that keeps nothing.
struct nowhere_t {
    template <typename Column, typename T>
    void value(Column /*column*/, const T& /*value*/) {}
    template <typename Column>
    void none(Column /*column*/) {}
};

TEST(memory, decodingAllocatesTheViewAlone) {
    std::set<std::string_view> decoded, listed;
    scratch_t scratch;
    nowhere_t nowhere;
    for (const std::string& text : recordedSentences()) {
        const nmeaFormat_t format(text.data(), text.size());
        std::unique_ptr<nmeaMsg_t> view;
        const long made = allocationsOf([&] { view.reset(nmeaMsg_t::create(format)); });
        EXPECT_EQ(made, view != nullptr ? 1 : 0) << text;
        record_t record;
        record.type = typeOfSentence(format.type());
        record.content = &format;
        visitRecord(record, scratch, [&](auto kind, const auto& recordView) {
            const auto readAll = [&] { readValues<decltype(kind)>(recordView, nowhere); };
            readAll(); // every text of the recording is short
            EXPECT_EQ(allocationsOf(readAll), 0) << text;
            decoded.insert(kind.name);
        });
    }
    for (typeIndex_t type = 0; type < sentenceCount; ++type) {
        if (recordTypes[type].rowCount > 0) {
            listed.insert(recordTypes[type].name);
        }
    }
    EXPECT_EQ(decoded, listed) << "the recording holds every sentence that has a view";
}

TEST(memory, listsAllocateForTheirEntriesAlone) {
    const nmeaFormat_t gsa = framed("$GPGSA,A,3,02,05,07,12,15,25,29,30,31,32,33,34,1,2,3,1");
    const nmeaFormat_t gsv = framed("$GPGSV,1,1,03,02,65,211,47,05,43,142,44,07,14,077,,1");
    std::vector<unsigned> ids;
    ids.reserve(12);
    kalo::gsvSet_t set;
    EXPECT_EQ(allocationsOf([&] { kalo::gsaMsg_t(gsa).decodeSatIds(ids); }), 0);
    EXPECT_EQ(allocationsOf([&] { set.decode(gsvMsg_t(gsv)); }), 3);
    EXPECT_TRUE(ids.size() == 12 && set.isComplete());
}

/// Calls `use(fail)` until no allocation is left to fail: in each call the next allocation of the
/// action that `use` hands to `fail` fails. `fail` gives whether it came to that. Nothing may be
/// lost, and at least `least` allocations have to have failed.
template <typename Use>
void failEach(long least, Use use) {
    bool failed = true;
    long number = 0;
    while (failed) {
        const long before = live;
        ++number;
        use([&](auto action) {
            untilFailure = number;
            try {
                action();
            } catch (const std::bad_alloc&) {
            } // anything else ends the test
            failed = untilFailure == 0;
            untilFailure = 0;
            return failed;
        });
        EXPECT_EQ(live, before) << number;
        EXPECT_TRUE(failed || number > least) << number;
    }
}

TEST(memory, everyAllocationMayFail) {
    const std::string text = sentence("$GPXYZ,a text that no short string holds, and another one");
    const std::string many = sentence("$GPXYZ" + std::string(60, ','));
    const nmeaFormat_t format(text.data(), text.size()), manyFields(many.data(), many.size());
    // A failure leaves no fields, and the object can be used again.
    const auto check = [&](unsigned count, auto action) {
        failEach(2, [&](auto fail) {
            nmeaFormat_t target = framed("$GPHDT,1,T");
            const bool failed = fail([&] { action(target); });
            EXPECT_EQ(target.fieldCount(), failed ? 0 : count);
            EXPECT_NE(target.isValid(), failed);
            EXPECT_EQ(target.type(), kalo::msgTypeUnknown);
            EXPECT_TRUE(target.init(text.data(), text.size()) &&
                        *target.field(2) == " and another one");
        });
    };
    check(3, [&](nmeaFormat_t& target) { target.init(text.data(), text.size()); });
    check(3, [&](nmeaFormat_t& target) { target = format; });
    check(61, [&](nmeaFormat_t& target) { target.init(many.data(), many.size()); });
    check(61, [&](nmeaFormat_t& target) { target = manyFields; });
    failEach(4, [&](auto fail) { fail([&] { nmeaFormat_t(text.data(), text.size()); }); });
    failEach(4, [&](auto fail) { fail([&] { static_cast<void>(nmeaFormat_t(format)); }); });
    const nmeaFormat_t one = framed("$GPGSV,2,1,4,1,10,20,30,2,10,20,30");
    const nmeaFormat_t two = framed("$GPGSV,2,2,4,3,10,20,30,4,10,20,30");
    failEach(1, [&](auto fail) { fail([&] { delete nmeaMsg_t::create(one); }); });
    failEach(1, [](auto fail) { fail([] { kalo::gsvSet_t(); }); });
    failEach(1, [](auto fail) { fail([] { kalo::timeContext_t(); }); });
    failEach(2, [&](auto fail) {
        kalo::gsvSet_t set;
        set.decode(gsvMsg_t(one));
        const bool failed = fail([&] { set.decode(gsvMsg_t(two)); });
        EXPECT_NE(set.isComplete(), failed);
        EXPECT_EQ(set.decode(gsvMsg_t(two)), failed); // the sentence once more
        EXPECT_TRUE(set.isComplete() && set.sats().size() == 4);
    });
}

} // namespace
