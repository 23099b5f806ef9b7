#include "tools/recordTable.h"

#include <array>

#include "kalo/kalo.h"

namespace {

using namespace kalo;

constexpr unit_t none{"", nullptr};
constexpr unit_t metre{"m", nullptr};
constexpr unit_t second{"s", nullptr};
constexpr unit_t angle{"deg", "rad"};

template <typename... Index>
constexpr fieldSet_t fields(Index... index) {
    return ((fieldSet_t{1} << index) | ...);
}

// The type that an accessor fills.
template <typename View, typename T>
T outputOf(bool (View::*)(T&) const);

// The reader of a plain accessor. `Record` is the view's class, which may inherit the accessor.
template <auto accessor, typename Record>
value_t plain(const nmeaMsg_t& view) {
    decltype(outputOf(accessor)) out{};
    if (!(static_cast<const Record&>(view).*accessor)(out)) {
        return {};
    }
    return out;
}

// The time of day in field 1.
value_t timeOfDay(const nmeaMsg_t& view) {
    timeOfDay_t time;
    if (!view.decodeTimeOfDay(time)) {
        return {};
    }
    return sentTime_t{time, std::string_view(view.field(1)->toString()).substr(4)};
}

template <typename Gga>
constexpr std::array ggaRows{
    valueRow_t{"timeOfDay", none, fields(1), "UTC time of the fix", timeOfDay},
    valueRow_t{"latitude", angle, fields(2, 3), "latitude, north positive",
               plain<&Gga::decodeLatitude, Gga>},
    valueRow_t{"longitude", angle, fields(4, 5), "longitude, east positive",
               plain<&Gga::decodeLongitude, Gga>},
    valueRow_t{"quality", none, fields(6), "fix quality indicator",
               plain<&Gga::decodeQuality, Gga>},
    valueRow_t{"satCount", none, fields(7), "satellites in use", plain<&Gga::decodeSatCount, Gga>},
    valueRow_t{"hdop", none, fields(8), "horizontal dilution of precision",
               plain<&Gga::decodeHdop, Gga>},
    valueRow_t{"altitude", metre, fields(9), "antenna height above mean sea level",
               plain<&Gga::decodeGeoidalHeight, Gga>},
    valueRow_t{"geoidalSeparation", metre, fields(11), "geoid above the ellipsoid",
               plain<&Gga::decodeGeoidalSeparation, Gga>},
    valueRow_t{"diffAge", second, fields(13), "age of differential corrections",
               plain<&Gga::decodeDiffAge, Gga>},
    valueRow_t{"refStationId", none, fields(14), "differential reference station",
               plain<&Gga::decodeRefStationId, Gga>},
};

constexpr recordType_t untyped(const char* name, const char* meaning) {
    return {name, meaning, nullptr, 0};
}

template <std::size_t count>
constexpr recordType_t typed(const char* name, const char* meaning,
                             const std::array<valueRow_t, count>& rows) {
    return {name, meaning, rows.data(), count};
}

// In the order of the enumerators from 1 on.
constexpr recordType_t sentences[] = {
    untyped("ALM", "almanac of a satellite"),
    untyped("DBT", "depth below the transducer"),
    untyped("DPT", "depth and offset of the transducer"),
    untyped("DTM", "datum"),
    untyped("GBS", "satellite fault detection"),
    typed("GGA", "fix data", ggaRows<ggaMsg_t>),
    untyped("GLL", "position"),
    untyped("GSA", "satellites used and dilutions of precision"),
    untyped("GST", "error statistics of the pseudoranges"),
    untyped("GSV", "satellites in view"),
    untyped("HDT", "true heading"),
    untyped("MWD", "wind direction and speed"),
    untyped("MWV", "wind speed and angle"),
    untyped("RMC", "recommended minimum data"),
    untyped("ROT", "rate of turn"),
    untyped("THS", "true heading and status"),
    untyped("VDM", "message of another vessel's transponder"),
    untyped("VTG", "course and speed over ground"),
    untyped("ZDA", "date and time"),
    typed("PZWBGGA", "fix data", ggaRows<pzwbGgaMsg_t>),
    untyped("PZWBGST", "error statistics with F-test"),
    untyped("PZWBMDE", "marginally detectable error"),
    untyped("PSIMLBP", "acoustic position of a vessel or vehicle"),
    untyped("PSIMSSB", "acoustic position of a beacon"),
    untyped("PTPSR", "heading and attitude of a dual antenna"),
};
static_assert(std::size(sentences) == msgTypePtpsr, "every sentence type has its row");

} // namespace

const recordType_t* const recordTypes = sentences;
const std::size_t recordTypeCount = std::size(sentences);

const recordType_t* sentenceType(nmeaMsgType_t type) {
    return type == msgTypeUnknown ? nullptr : &sentences[type - 1];
}

std::string fieldList(fieldSet_t fields) {
    std::string list;
    for (unsigned i = 0; fields >> i != 0; ++i) {
        if ((fields >> i & 1) == 0) {
            continue;
        }
        const unsigned first = i;
        while (i + 1 < 64 && (fields >> (i + 1) & 1) != 0) {
            ++i;
        }
        list += (list.empty() ? "" : ",") + std::to_string(first);
        if (i > first) {
            list += (i == first + 1 ? "," : "-") + std::to_string(i);
        }
    }
    return list;
}
