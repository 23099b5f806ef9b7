#include "tools/report/beaconPlace.h"

#include <cmath>
#include <string_view>
#include <type_traits>

#include "tools/record/registry.h"

namespace {

constexpr std::size_t longestName = 200;

struct values_t {
    std::string name;
    std::optional<double> starboard;
    std::optional<double> forward;
    std::optional<double> north;
    std::optional<double> east;
    std::optional<double> range;
    std::optional<double> bearing; // radians, from the bow
    std::optional<double> utmNorthing;
    std::optional<double> utmEasting;
    std::optional<double> latitude; // radians
    std::optional<double> longitude;
    std::optional<double> x;
    std::optional<double> y;
};
using number_t = std::optional<double> values_t::*;

struct numberName_t {
    std::string_view name;
    number_t number;
};
constexpr numberName_t numbers[] = {
    {"starboardOffset", &values_t::starboard},
    {"forwardOffset", &values_t::forward},
    {"northOffset", &values_t::north},
    {"eastOffset", &values_t::east},
    {"range", &values_t::range},
    {"bearing", &values_t::bearing},
    {"utmNorthing", &values_t::utmNorthing},
    {"utmEasting", &values_t::utmEasting},
    {"latitude", &values_t::latitude},
    {"longitude", &values_t::longitude},
    {"beaconX", &values_t::x},
    {"beaconY", &values_t::y},
};

struct frame_t {
    number_t right;
    number_t up;
    beaconFrame_t frame;
};
constexpr frame_t frames[] = {
    {&values_t::starboard, &values_t::forward, beaconFrame_t::bow},
    {&values_t::east, &values_t::north, beaconFrame_t::north},
    {&values_t::utmEasting, &values_t::utmNorthing, beaconFrame_t::utm},
    {&values_t::x, &values_t::y, beaconFrame_t::xy},
};

class sink_t {
public:
    template <typename Column, typename T>
    void value(Column /*column*/, const T& value) {
        constexpr std::string_view name = Column::row.name;
        if constexpr (name == "beaconId" || name == "objectType") {
            values.name = std::string_view(value).substr(0, longestName);
        } else if constexpr (std::is_arithmetic_v<T>) {
            for (const numberName_t& row : numbers) {
                if (name == row.name) {
                    values.*row.number = static_cast<double>(value);
                }
            }
        }
    }
    template <typename Column>
    void none(Column /*column*/) {}

    values_t values;
};

std::optional<beaconPlace_t> placeOf(const values_t& values, const std::optional<place_t>& vessel) {
    for (const frame_t& row : frames) {
        if (values.*row.right && values.*row.up) {
            return beaconPlace_t{
                values.name, row.frame, {}, *(values.*row.right), *(values.*row.up)};
        }
    }
    if (values.range && values.bearing) {
        return beaconPlace_t{values.name,
                             beaconFrame_t::bow,
                             {},
                             *values.range * std::sin(*values.bearing),
                             *values.range * std::cos(*values.bearing)};
    }
    if (values.latitude && values.longitude && vessel) {
        const offset_t offset = offsetBetween(*vessel, {*values.latitude, *values.longitude});
        return beaconPlace_t{values.name, beaconFrame_t::north, {}, offset.east, offset.north};
    }
    return std::nullopt;
}

} // namespace

bool isBeacon(const record_t& record) {
    return record.type == typeOfSentence(kalo::msgTypePsimSsb) ||
           record.type == typeOfSentence(kalo::msgTypePsimLbp) ||
           record.type == typeOf<trackingRecord_t>;
}

std::optional<beaconPlace_t> readBeacon(const record_t& record, scratch_t& scratch,
                                        const std::optional<place_t>& vessel) {
    std::optional<beaconPlace_t> place;
    visitRecord(record, scratch, [&](auto kind, const auto& source) {
        using type_t = decltype(kind);
        constexpr bool isFixed = type_t::name == "PSIMLBP";
        if constexpr (isFixed || type_t::name == "PSIMSSB" || type_t::name == "ATS") {
            sink_t sink;
            readValues<type_t>(source, sink);
            place = placeOf(sink.values, vessel);
            // Offsets from the origin of an array of transponders, not from the vessel.
            if (isFixed && sink.values.north && place) {
                place->frame = beaconFrame_t::localGrid;
            }
        }
    });
    return place;
}
