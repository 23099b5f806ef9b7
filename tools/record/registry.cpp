#include "tools/record/registry.h"

#include <algorithm>

#include "tools/input/text.h"

namespace {

template <typename Record, std::size_t... index>
constexpr std::array<recordType_t::row_t, sizeof...(index)>
rowsOf(std::index_sequence<index...> /*all*/) {
    return {recordType_t::row_t{
        std::get<index>(Record::rows).name, std::get<index>(Record::rows).unit,
        std::get<index>(Record::rows).fields, std::get<index>(Record::rows).meaning,
        std::get<index>(Record::rows).place,
        shapeOf<typename column_t<Record, index>::value_t>()}...};
}

template <typename Record>
constexpr auto listedRows = rowsOf<Record>(std::make_index_sequence<rowCountOf<Record>>{});

constexpr auto types = arrayOfRecords([](auto record) {
    using record_t = decltype(record);
    return recordType_t{record_t::name, record_t::meaning, listedRows<record_t>.data(),
                        listedRows<record_t>.size()};
});

} // namespace

const recordType_t* const recordTypes = types.data();

typeIndex_t typeOfTableLine(kalo::ntripRecordType_t line) {
    switch (line) {
    case kalo::ntripRecordStream: return typeOf<streamRecord_t>;
    case kalo::ntripRecordCaster: return typeOf<casterRecord_t>;
    case kalo::ntripRecordNetwork: return typeOf<networkRecord_t>;
    case kalo::ntripRecordServer:
    case kalo::ntripRecordEndOfTable:
    case kalo::ntripRecordHeader:
    case kalo::ntripRecordUnknown: break;
    }
    return typeOf<tableLineRecord_t>;
}

typeIndex_t typeOfName(std::string_view name) {
    const auto found = std::find_if(types.begin(), types.end(), [&](const recordType_t& type) {
        return std::equal(name.begin(), name.end(), type.name.begin(), type.name.end(),
                          [](char given, char own) { return toCapital(given) == own; });
    });
    return found == types.end() ? noType : static_cast<typeIndex_t>(found - types.begin());
}

std::string_view typeNameOf(const record_t& record) {
    return record.entry != nullptr ? std::string_view(record.entry->name)
           : record.type != noType ? recordTypes[record.type].name
                                   : std::string_view();
}

bool hasNamedValues(const record_t& record) {
    return record.entry != nullptr ||
           (record.type != noType && recordTypes[record.type].rowCount > 0);
}

std::string placeOf(const recordType_t::row_t& row) {
    return row.place != nullptr ? row.place : placeOf(row.fields);
}

std::string placeOf(fieldSet_t fields) {
    const auto isIn = [&](unsigned i) { return i < fieldBits && (fields >> i & 1) != 0; };
    std::string list;
    for (unsigned i = 0; i < fieldBits; ++i) {
        if (!isIn(i)) {
            continue;
        }
        const unsigned first = i;
        while (isIn(i + 1)) {
            ++i;
        }
        list += (list.empty() ? "" : ",") + std::to_string(first);
        if (i + 1 == fieldBits) {
            list += "-";
        } else if (i > first) {
            list += (i == first + 1 ? "," : "-") + std::to_string(i);
        }
    }
    return list;
}
