// Motion records: any bytes decode, what was decoded is encoded again, and any values encode.
#include <cmath>

#include "fuzz/target.h"
#include "kalo/sensors/tss1MsgBuilder.h"

namespace {

using fuzz::require;
using kalo::tss1Msg_t;

constexpr unsigned valueCount = 5;

struct values_t {
    std::uint32_t validMask;
    double numbers[valueCount]; // roll, pitch, heave, horizontal and vertical acceleration
    tss1Msg_t::status_t status;
};

template <typename Record>
values_t valuesOf(const Record& record) {
    return {record.validMask,
            {record.roll, record.pitch, record.heave, record.hAccel, record.vAccel},
            record.status};
}

tss1Msg_t decoded(std::string_view text) {
    tss1Msg_t record;
    record.init(text.data(), text.size());
    return record;
}

constexpr double scales[valueCount] = {tss1Msg_t::rollPitchScale, tss1Msg_t::rollPitchScale,
                                       tss1Msg_t::heaveScale, tss1Msg_t::hAccelScale,
                                       tss1Msg_t::vAccelScale};

kalo::tss1MsgBuilder_t builderOf(const values_t& values) {
    kalo::tss1MsgBuilder_t builder;
    builder.setRoll(values.numbers[0]);
    builder.setPitch(values.numbers[1]);
    builder.setHeave(values.numbers[2]);
    builder.setHorizontalAcceleration(values.numbers[3]);
    builder.setVerticalAcceleration(values.numbers[4]);
    builder.setStatus(values.status);
    return builder;
}

// Whether `build` gives 27 bytes by the ranges in its header.
bool isInRange(const values_t& values) {
    // at the bound itself, the rounding of the conversions decides
    constexpr double mostDegrees = 99.994999999999 * tss1Msg_t::rollPitchScale * 100;
    return std::fabs(values.numbers[0]) < mostDegrees &&
           std::fabs(values.numbers[1]) < mostDegrees &&
           std::fabs(values.numbers[2]) < 99.994999999999 && values.numbers[3] >= 0 &&
           values.numbers[3] < 9.8048 && values.numbers[4] >= -20.48 &&
           values.numbers[4] <= 20.479375;
}

void checkBuild(const values_t& values) {
    const std::string text = builderOf(values).build();
    require(text.size() >= 27 && text.substr(text.size() - 2) == "\r\n", "a line");
    if (isInRange(values)) {
        require(text.size() == 27, "the columns of a record");
        const values_t again = valuesOf(decoded(text));
        require(again.validMask == tss1Msg_t::validAll && again.status == values.status,
                "a complete record");
        for (unsigned i = 0; i < valueCount; ++i) {
            require(std::fabs(again.numbers[i] - values.numbers[i]) <= scales[i] * 1.000001,
                    "within one count");
        }
    }
}

} // namespace

void fuzz::tss1(std::string_view input) {
    const tss1Msg_t record = decoded(input);
    values_t values = valuesOf(record);
    double number = 77;
    tss1Msg_t::status_t status = tss1Msg_t::unaidedStable;
    require(record.getRoll(number) == ((record.validMask & tss1Msg_t::validRoll) != 0) &&
                record.getStatus(status) == ((record.validMask & tss1Msg_t::validStatus) != 0),
            "the mask says which values there are");
    require((record.validMask & ~tss1Msg_t::validAll) == 0 &&
                (record.validMask == 0 || (input.size() >= 25 && input[0] == ':')),
            "values of a record only");
    if (record.validMask == tss1Msg_t::validAll && isInRange(values)) {
        // the builder truncates accelerations, so the middle of their count gives it again
        values_t middle = values;
        for (const unsigned i : {3U, 4U}) {
            middle.numbers[i] += (std::signbit(values.numbers[i]) ? -0.5 : 0.5) * scales[i];
        }
        const values_t again = valuesOf(decoded(builderOf(middle).build()));
        for (unsigned i = 0; i < valueCount; ++i) {
            const double off = std::fabs(again.numbers[i] - values.numbers[i]);
            const bool isWhole =
                std::nearbyint(values.numbers[i] / scales[i]) * scales[i] == values.numbers[i];
            require(isWhole ? off == 0 : off <= scales[i] * 0.500001, "encoded as it was decoded");
        }
    }

    draw_t draw(input);
    for (unsigned i = 0; i < valueCount; ++i) {
        const double any = draw.real();
        values.numbers[i] = draw.below(2) == 0 ? any : std::fmod(any, 20000) * scales[i];
    }
    values.status = static_cast<tss1Msg_t::status_t>(draw.below(8));
    checkBuild(values);
}
