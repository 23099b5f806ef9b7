// What the library allocates and frees, and what is left when an allocation fails.
#include <fstream>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "kalo/kalo.h"
#include "tests/allocations.h"
#include "tests/sentence.h"
#include "tools/record/registry.h"

namespace {

using allocations::failEach;
using kalo::gsvMsg_t;
using kalo::nmeaFormat_t;
using kalo::nmeaMsg_t;

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
    EXPECT_GT(allocations::of(frameAll), 0);
    EXPECT_EQ(allocations::of(frameAll), 0);
    const nmeaFormat_t copy = format;
    EXPECT_EQ(allocations::of([&] { format = copy; }), 0);
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
        const long made = allocations::of([&] { view.reset(nmeaMsg_t::create(format)); });
        EXPECT_EQ(made, view != nullptr ? 1 : 0) << text;
        failEach(made, [&](auto fail) { fail([&] { delete nmeaMsg_t::create(format); }); });
        record_t record;
        record.type = typeOfSentence(format.type());
        record.content = &format;
        visitRecord(record, scratch, [&](auto kind, const auto& recordView) {
            const auto readAll = [&] { readValues<decltype(kind)>(recordView, nowhere); };
            readAll(); // every text of the recording is short
            EXPECT_EQ(allocations::of(readAll), 0) << text;
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
    EXPECT_EQ(allocations::of([&] { kalo::gsaMsg_t(gsa).decodeSatIds(ids); }), 0);
    EXPECT_EQ(allocations::of([&] { set.decode(gsvMsg_t(gsv)); }), 3);
    EXPECT_TRUE(ids.size() == 12 && set.isComplete());
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
}

TEST(memory, everyAllocationOfASetMayFail) {
    const nmeaFormat_t one = framed("$GPGSV,2,1,4,1,10,20,30,2,10,20,30");
    const nmeaFormat_t two = framed("$GPGSV,2,2,4,3,10,20,30,4,10,20,30");
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
    failEach(2, [&](auto fail) {
        kalo::gsvSet_t set;
        fail([&] { set.decode(gsvMsg_t(one)); });
        EXPECT_TRUE(set.decode(gsvMsg_t(one)) && set.sats().size() == 2);
    });
    const nmeaFormat_t gsa = framed("$GPGSA,A,3,02,05,07,12,15,25,29,30,31,32,33,34,1,2,3,1");
    failEach(1, [&](auto fail) {
        std::vector<unsigned> ids;
        fail([&] { kalo::gsaMsg_t(gsa).decodeSatIds(ids); });
        ids.clear();
        EXPECT_TRUE(kalo::gsaMsg_t(gsa).decodeSatIds(ids) && ids.size() == 12);
    });
    failEach(1, [&](auto fail) { fail([&] { kalo::gsaMsg_t(gsa).getFields(0); }); });
}

constexpr const char* longText = "a text that no short string holds";
constexpr const char* otherText = "another text that no short string holds";

// A field that could not be changed holds what it held before.
TEST(memory, everyAllocationOfAFieldMayFail) {
    const std::string text = longText;
    const kalo::nmeaField_t field(text);
    failEach(1, [&](auto fail) { fail([&] { kalo::nmeaField_t(text.data(), text.size()); }); });
    failEach(1, [&](auto fail) { fail([&] { kalo::nmeaField_t{text}; }); });
    failEach(1, [&](auto fail) { fail([&] { static_cast<void>(kalo::nmeaField_t(field)); }); });
    const auto check = [&](auto action) {
        failEach(1, [&](auto fail) {
            kalo::nmeaField_t target(std::string("short"));
            const bool failed = fail([&] { action(target); });
            EXPECT_EQ(target.toString(), failed ? "short" : text);
        });
    };
    check([&](kalo::nmeaField_t& target) { target.init(text.data(), text.size()); });
    check([&](kalo::nmeaField_t& target) { target = text; });
    check([&](kalo::nmeaField_t& target) { target = field; });
}

// A text that could not be copied out leaves `out` as it was.
TEST(memory, everyAllocationOfATextMayFail) {
    const std::string line = "16 NOV 2026 21:41:01:250 E:one-long-enough-to-need-memory";
    const kalo::atsAsciiMsg_t record(line.data(), line.size());
    const kalo::nmeaField_t field{std::string(longText)};
    const auto check = [](const char* text, auto decode) {
        failEach(1, [&](auto fail) {
            std::string out = "short";
            const bool failed = fail([&] { decode(out); });
            EXPECT_EQ(out, failed ? "short" : text);
        });
    };
    check(longText, [&](std::string& out) { field.decode(out); });
    check("one-long-enough-to-need-memory", [&](std::string& out) { record.decodeField(11, out); });
    check("one-long-enough-to-need-memory", [&](std::string& out) { record.decodeErrorCode(out); });
}

TEST(memory, writingToABufferAllocatesNothing) {
    char bytes[16] = {};
    EXPECT_EQ(allocations::of([&] {
                  kalo::bufferStream_t stream(bytes, sizeof bytes);
                  stream << longText << 4.5;
                  EXPECT_EQ(stream.written(), sizeof bytes);
              }),
              0);
}

// No number comes out: by the exception, or, while a stream reads, because it swallows the
// exception and takes the text for one that is no number.
TEST(memory, everyAllocationOfANumberMayFail) {
    const auto check = [](const std::string& text, auto number, auto... base) {
        int readings = 0;
        failEach(1, [&](auto fail) {
            fail([&] { readings += kalo::decode(text, number, base...) ? 1 : 0; });
        });
        EXPECT_EQ(readings, 1) << text; // the last time, when nothing failed
    };
    const std::string longNumber = "+" + std::string(40, '0') + "7";
    for (const std::string& text : {std::string("+1.5"), std::string("\t1e-3"), longNumber}) {
        check(text, 0.0);
        check(text, 0.0F);
    }
    check(longNumber, 0, 10);
    check(longNumber, 0ULL, 16);
}

// The texts of a tracking record, those of its slots from 4 on.
strings_t textsOf(const kalo::atsAsciiMsg_t& record) {
    strings_t texts;
    std::string text;
    for (unsigned slot = 4; slot < 20; ++slot) {
        texts.push_back(record.decodeField(slot, text) ? text : "");
    }
    return texts;
}

strings_t textsOf(const kalo::ntripRecordDecoder_t& record) {
    strings_t texts;
    for (unsigned i = 0; i < record.fieldCount(); ++i) {
        texts.push_back(record.fieldAt(i) != nullptr ? *record.fieldAt(i) : "");
    }
    return texts;
}

// An assignment that fails leaves each text as it was or as it shall be, and can be repeated.
template <typename Record>
void checkAssignment(const Record& from, const Record& before) {
    const strings_t newTexts = textsOf(from), oldTexts = textsOf(before);
    failEach(1, [&](auto fail) {
        Record target(before);
        const bool failed = fail([&] { target = from; });
        const strings_t texts = textsOf(target);
        for (std::size_t i = 0; i < texts.size(); ++i) {
            EXPECT_TRUE((i < newTexts.size() && texts[i] == newTexts[i]) ||
                        (failed && texts[i] == oldTexts[i]))
                << texts[i];
        }
        target = from;
        EXPECT_EQ(textsOf(target), newTexts);
    });
    failEach(2, [&](auto fail) { fail([&] { static_cast<void>(Record(from)); }); });
}

TEST(memory, everyAllocationOfATrackingRecordMayFail) {
    const std::string first =
        std::string("16 NOV 2026 21:41:01:250 B:one-long-enough-to-need-memory") +
        " E:another-long-enough-to-need-memory X:1";
    const std::string second =
        "16 NOV 2026 21:41:01:250 B:1 E:2 D:a-third-that-needs-memory-as-well";
    failEach(3, [&](auto fail) { fail([&] { kalo::atsAsciiMsg_t(first.data(), first.size()); }); });
    checkAssignment<kalo::atsAsciiMsg_t>({first.data(), first.size()},
                                         {second.data(), second.size()});
}

// A record that could not be read to its end holds its first fields, and one without its text.
TEST(memory, everyAllocationOfATableRecordMayFail) {
    const auto read = [](kalo::ntripStreamDecoder_t& record, const std::string& line) {
        record.init(line.data(), static_cast<unsigned>(line.size()));
    };
    const std::string line = std::string("STR;") + longText + ";;" + otherText + ";4;5;6;7;8\n";
    const std::string shorter = std::string("STR;") + otherText + ";2;3\n";
    kalo::ntripStreamDecoder_t whole, other;
    read(whole, line);
    read(other, shorter);
    const strings_t texts = textsOf(whole);
    failEach(4, [&](auto fail) {
        kalo::ntripStreamDecoder_t record;
        const bool failed = fail([&] { read(record, line); });
        strings_t first = textsOf(record);
        EXPECT_TRUE(failed || first == texts);
        if (failed && !first.empty()) {
            first.pop_back();
        }
        EXPECT_TRUE(std::equal(first.begin(), first.end(), texts.begin()));
        read(record, line);
        EXPECT_EQ(textsOf(record), texts);
    });
    checkAssignment(whole, other);
    checkAssignment(other, whole);
}

TEST(memory, everyAllocationOfAnEncodedRecordMayFail) {
    kalo::tss1MsgBuilder_t builder;
    builder.validMask = kalo::tss1Msg_t::validAll;
    failEach(1, [&](auto fail) {
        fail([&] { static_cast<void>(builder.build()); });
        EXPECT_EQ(builder.build().size(), 27U);
    });
}

} // namespace
