#include "bench/passes.h"

#include <cstring>
#include <memory>

#include "kalo/kalo.h"

namespace {

using namespace kalo;

template <typename View, typename T>
T outputOf(bool (View::*)(T&) const);

template <auto accessor, typename View>
unsigned long decodes(const View& view) {
    decltype(outputOf(accessor)) out{};
    return (view.*accessor)(out) ? 1 : 0;
}

// A type with all its accessors.
template <typename View, auto... accessors>
struct values_t {
    static unsigned long ofView(const nmeaMsg_t& msg) {
        const View& view = static_cast<const View&>(msg);
        return (decodes<accessors, View>(view) + ...);
    }
    static unsigned long onStack(const nmeaFormat_t& format) { return ofView(View(format)); }
};

template <typename Gga>
using gga_t =
    values_t<Gga, &Gga::decodeTimeOfDay, &Gga::decodeLatitude, &Gga::decodeLongitude,
             &Gga::decodeQuality, &Gga::decodeSatCount, &Gga::decodeHdop, &Gga::decodeGeoidalHeight,
             &Gga::decodeGeoidalSeparation, &Gga::decodeDiffAge, &Gga::decodeRefStationId>;

struct row_t {
    nmeaMsgType_t type;
    const char* name;
    unsigned long (*onStack)(const nmeaFormat_t& format);
    unsigned long (*ofView)(const nmeaMsg_t& view);
};

template <typename Values>
constexpr row_t row(nmeaMsgType_t type, const char* name) {
    return {type, name, Values::onStack, Values::ofView};
}

// A row for each type with a view.
constexpr row_t rows[] = {
    row<gga_t<ggaMsg_t>>(msgTypeGga, "GGA"),
    row<gga_t<pzwbGgaMsg_t>>(msgTypePzwbGga, "PZWBGGA"),
};

const row_t* rowOf(nmeaMsgType_t type) {
    static const auto byType = [] {
        std::vector<const row_t*> table(msgTypePtpsr + 1);
        for (const row_t& row : rows) {
            table[row.type] = &row;
        }
        return table;
    }();
    return byType[type];
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

unsigned long valuesOnStack(const sentences_t& sentences) {
    nmeaFormat_t format;
    unsigned long sum = 0;
    for (const std::string_view text : sentences) {
        format.init(text.data(), text.size());
        const row_t* row = rowOf(format.type());
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

} // namespace

unsigned long referencePass(const sentences_t& sentences) {
    unsigned long sum = 0;
    if (sentences.empty()) {
        return sum;
    }
    for (const std::string_view text : sentences) {
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

std::vector<pass_t> mixedPasses() {
    return {{"framing, object re-used", framingReused},
            {"framing, fresh object", framingFresh},
            {"every value, view on the stack", valuesOnStack},
            {"every value, through create", valuesByCreate}};
}

std::vector<pass_t> typePasses() {
    std::vector<pass_t> passes;
    for (const row_t& row : rows) {
        passes.push_back({row.name, valuesOnStack});
    }
    return passes;
}
