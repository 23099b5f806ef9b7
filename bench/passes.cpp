#include "bench/passes.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <type_traits>

#include "kalo/kalo.h"
#include "kalo/nmea/sentences.h"
#include "tools/record/sentenceRows.h"

namespace {

using namespace kalo;

// What a row of the tool's record table reads, by the library alone: its accessor, or for the odd
// rows what the library offers in their place.

template <auto accessor, typename View>
unsigned long readOne(const View& view, scratch_t& scratch) {
    if constexpr (std::is_member_function_pointer_v<decltype(accessor)>) {
        std::remove_cv_t<decltype(outputOf(accessor))> trivial{};
        return (view.*accessor)(scratch.place(trivial)) ? 1 : 0;
    } else if constexpr (std::is_invocable_v<decltype(accessor), const View&, double&>) {
        double out = 0; // by a companion
        return accessor(view, out) == reading_t::present ? 1 : 0;
    } else if constexpr (std::is_same_v<decltype(accessor), decltype(&ownTime)>) {
        timeOfDay_t out;
        return view.decodeTimeOfDay(out) ? 1 : 0;
    } else if constexpr (std::is_same_v<decltype(accessor), decltype(&ownDate)>) {
        date_t out;
        return view.decodeDate(out) ? 1 : 0;
    } else if constexpr (std::is_same_v<decltype(accessor), decltype(&satellitesOfSentence)>) {
        unsigned long sum = 0;
        unsigned blocks = 0;
        for (unsigned i = 0; view.decodeSatCount(blocks) && i < blocks; ++i) {
            unsigned number = 0;
            double value = 0;
            sum += (view.decodeSatPrn(i, number) ? 1U : 0U) +
                   (view.decodeSatElevation(i, value) ? 1U : 0U) +
                   (view.decodeSatAzimuth(i, value) ? 1U : 0U) +
                   (view.decodeSatSnr(i, value) ? 1U : 0U);
        }
        return sum;
    } else {
        static_assert(std::is_same_v<decltype(accessor), decltype(&signalIdOfSentence)>);
        unsigned out = 0;
        return view.decodeSignalId(out) ? 1 : 0;
    }
}

template <auto reader, auto check, typename View>
unsigned long readRow(const row_t<reader, check>& /*row*/, const View& view, scratch_t& scratch) {
    return readOne<reader>(view, scratch);
}

// How many of its values a view gives.
template <typename View>
unsigned long valuesOf(const View& view) {
    static thread_local scratch_t scratch; // keeps its memory as a caller's would
    return std::apply([&](const auto&... row) { return (readRow(row, view, scratch) + ... + 0UL); },
                      valuesOf_t<View>::rows);
}

template <typename View>
unsigned long onStack(const nmeaFormat_t& format) {
    return valuesOf(View(format));
}

template <typename View>
unsigned long ofView(const nmeaMsg_t& view) {
    return valuesOf(static_cast<const View&>(view));
}

struct type_t {
    const char* name;
    unsigned long (*onStack)(const nmeaFormat_t& format) = nullptr;
    unsigned long (*ofView)(const nmeaMsg_t& view) = nullptr;
};

// By the value of the type, from 1 on; without functions where there is no view.
constexpr auto rows = arrayOfSentences([](auto sentence) -> type_t {
    using view_t = typename decltype(sentence)::view_t;
    if constexpr (std::is_same_v<view_t, noView_t>) {
        return {sentence.name.data()};
    } else {
        return {sentence.name.data(), onStack<view_t>, ofView<view_t>};
    }
});

// Null for a type without a view.
const type_t* rowOf(nmeaMsgType_t type) {
    const type_t* row =
        type == msgTypeUnknown ? nullptr : &rows[static_cast<std::size_t>(type) - 1];
    return row != nullptr && row->onStack != nullptr ? row : nullptr;
}

unsigned long framingReused(const sentences_t& sentences) {
    nmeaFormat_t format;
    unsigned long sum = 0;
    for (const std::string_view text : sentences) {
        format.init(text.data(), text.size());
        sum += format.fieldCount();
    }
    return sum;
}

unsigned long framingFresh(const sentences_t& sentences) {
    unsigned long sum = 0;
    for (const std::string_view text : sentences) {
        sum += nmeaFormat_t(text.data(), text.size()).fieldCount();
    }
    return sum;
}

unsigned long framingAndCreate(const sentences_t& sentences) {
    nmeaFormat_t format;
    unsigned long sum = 0;
    for (const std::string_view text : sentences) {
        format.init(text.data(), text.size());
        const std::unique_ptr<nmeaMsg_t> view(nmeaMsg_t::create(format));
        sum += view == nullptr ? 1 : static_cast<unsigned long>(view->type());
    }
    return sum;
}

unsigned long valuesOnStack(const sentences_t& sentences) {
    nmeaFormat_t format;
    unsigned long sum = 0;
    for (const std::string_view text : sentences) {
        format.init(text.data(), text.size());
        const type_t* row = rowOf(format.type());
        sum += row == nullptr ? 1 : row->onStack(format);
    }
    return sum;
}

unsigned long valuesByCreate(const sentences_t& sentences) {
    nmeaFormat_t format;
    unsigned long sum = 0;
    for (const std::string_view text : sentences) {
        format.init(text.data(), text.size());
        const std::unique_ptr<nmeaMsg_t> view(nmeaMsg_t::create(format));
        sum += view == nullptr ? 1 : rowOf(view->type())->ofView(*view);
    }
    return sum;
}

// Frames a GSV sentence and offers it to the set of its talker.
unsigned long setAssembly(const sentences_t& sentences) {
    gsvSet_t set;
    nmeaFormat_t format;
    unsigned long complete = 0;
    for (const std::string_view text : sentences) {
        format.init(text.data(), text.size());
        set.decode(gsvMsg_t(format));
        complete += set.isComplete() ? 1 : 0;
    }
    return complete;
}

// One conversion each way for a sentence, over 40 years.
unsigned long gpsTimes(const sentences_t& sentences) {
    const gps2utc_t parameters{17, 18, 137, 7};
    double sum = 0;
    for (std::size_t i = 0; i < sentences.size(); ++i) {
        const gpsTime_t time(static_cast<unsigned>(i % 2000), static_cast<double>(i % 604800));
        sum += gpsTime_t(time.toUnix(), parameters).seconds;
    }
    return static_cast<unsigned long>(sum);
}

unsigned long motionValues(const sentences_t& records) {
    tss1Msg_t motion;
    unsigned long sum = 0;
    for (const std::string_view text : records) {
        motion.init(text.data(), text.size());
        sum += motion.validMask;
    }
    return sum;
}

unsigned long trackingValues(const sentences_t& records) {
    unsigned long sum = 0;
    for (const std::string_view text : records) {
        const atsAsciiMsg_t tracking(text.data(), text.size());
        date_t date;
        timeOfDay_t time;
        double value = 0;
        sum += (tracking.decodeDate(date) ? 1U : 0U) + (tracking.decodeTimeOfDay(time) ? 1U : 0U) +
               (tracking.decodeBeaconX(value) ? 1U : 0U) +
               (tracking.decodeBeaconY(value) ? 1U : 0U) +
               (tracking.decodeBeaconDepth(value) ? 1U : 0U) +
               (tracking.decodeVesselHeading(value) ? 1U : 0U);
    }
    return sum;
}

unsigned long tableValues(const sentences_t& records) {
    ntripStreamDecoder_t stream;
    unsigned long sum = 0;
    for (const std::string_view text : records) {
        auto length = static_cast<unsigned>(text.size());
        sum += decodeNtripRecordType(text.data(), length) == ntripRecordStream ? 1U : 0U;
        stream.init(text.data(), length);
        ntripCarrierType_t carrier{};
        float latitude = 0;
        sum += (stream.decodeCarrierType(carrier) ? 1U : 0U) +
               (stream.decodeField(9, latitude) ? 1U : 0U);
    }
    return sum;
}

} // namespace

unsigned long referencePass(const sentences_t& lines) {
    unsigned long sum = 0;
    if (lines.empty()) {
        return sum;
    }
    for (const std::string_view text : lines) {
        const void* lineEnd = std::memchr(text.data(), '\n', text.size());
        const auto* const end = static_cast<const char*>(lineEnd);
        for (const char* at = text.data(); at != nullptr && at < end; ++sum) {
            at = static_cast<const char*>(std::memchr(at, ',', static_cast<std::size_t>(end - at)));
            at = at == nullptr ? nullptr : at + 1;
        }
        unsigned char sumOfBytes = 0;
        for (const char* at = text.data(); at < end; ++at) {
            sumOfBytes = static_cast<unsigned char>(sumOfBytes ^ static_cast<unsigned char>(*at));
            asm volatile("" : "+r"(sumOfBytes)); // byte by byte, whatever the compiler could do
        }
        sum += sumOfBytes;
    }
    return sum;
}

sentences_t numberTexts(const sentences_t& lines) {
    sentences_t texts;
    for (const std::string_view sentence : lines) {
        for (std::size_t begin = 0; begin < sentence.size();) {
            const std::size_t end =
                std::min(sentence.find_first_of(",*\r", begin), sentence.size());
            const std::string_view text = sentence.substr(begin, end - begin);
            double value = 0;
            if (decode(std::string(text), value)) {
                texts.push_back(text);
            }
            begin = end + 1;
        }
    }
    return texts;
}

unsigned long numbersFromText(const sentences_t& texts) {
    unsigned long sum = 0;
    std::string copy; // keeps its memory
    for (const std::string_view text : texts) {
        double value = 0;
        copy.assign(text);
        sum += decode(copy, value) ? 1 : 0;
    }
    return sum;
}

std::vector<pass_t> mixedPasses() {
    return {{"all", "framing, object re-used", framingReused},
            {"all", "framing, fresh object", framingFresh},
            {"all", "framing and create", framingAndCreate},
            {"all", "every value, view on the stack", valuesOnStack},
            {"all", "every value, through create", valuesByCreate}};
}

std::vector<pass_t> typePasses() {
    std::vector<pass_t> passes;
    for (const type_t& row : rows) {
        if (row.onStack != nullptr) {
            passes.push_back({row.name, "every value", valuesOnStack});
        }
    }
    passes.push_back({"GSV", "framing and set assembly", setAssembly});
    passes.push_back({"ZDA", "GPS time to Unix and back, one each", gpsTimes});
    passes.push_back({"TSS1", "every value", motionValues});
    passes.push_back({"ATS", "values", trackingValues});
    passes.push_back({"STR", "kind, fields and two values", tableValues});
    return passes;
}
