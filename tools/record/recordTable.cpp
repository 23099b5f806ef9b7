#include "tools/record/recordTable.h"

#include <algorithm>
#include <iterator>

#include "tools/record/registry.h"
#include "tools/record/satelliteMembers.h"

namespace {

// The kinds of records that differ in what stands around their values.
using kindSet_t = unsigned;
constexpr kindSet_t named = 1;   // sentences with named values
constexpr kindSet_t unnamed = 2; // sentences that are recognised, but have no named values
constexpr kindSet_t untyped = 4; // other sentences
constexpr kindSet_t group = 8;   // of satellites
constexpr kindSet_t tracking = 16;
constexpr kindSet_t other = 32; // of motion, or a line of a sourcetable
constexpr kindSet_t malformed = 64;
constexpr kindSet_t sentences = named | unnamed | untyped;
constexpr kindSet_t all = sentences | group | tracking | other | malformed;
constexpr kindSet_t withBytes = all & ~group;

struct keyRow_t {
    const char* name;
    recordKey_t key;
    shape_t shape;
    kindSet_t kinds;
    kindSet_t always; // the kinds in which it is never absent
    const char* meaning;
};

constexpr keyRow_t keyRows[] = {
    {"source", recordKey_t::source, shape_t::text, all, all, "input"},
    {"line", recordKey_t::line, shape_t::integer, all, all,
     "number of the line, from 1; null if it is not known"},
    {"offset", recordKey_t::offset, shape_t::integer, withBytes, withBytes,
     "position of the record's first byte in its input"},
    {"received", recordKey_t::received, shape_t::text, all, 0,
     "when the line was received, by a stamp in it"},
    {"tag", recordKey_t::tag, shape_t::tags, withBytes, 0, "tag blocks in front of the record"},
    {"prefix", recordKey_t::prefix, shape_t::text, all, 0, "what else stands in front"},
    {"type", recordKey_t::type, shape_t::text, all, all, "type of the record"},
    {"talker", recordKey_t::talker, shape_t::text, sentences | group, 0, "who sent it"},
    {"time", recordKey_t::time, shape_t::instant, named | tracking, 0, "UTC instant"},
    {"timeRule", recordKey_t::timeRule, shape_t::text, named | tracking, 0,
     "how the instant got its date"},
    {"", recordKey_t::value, shape_t::text, 0, 0, ""},
    {"checksum", recordKey_t::checksum, shape_t::boolean, sentences, 0,
     "false: the sentence carried no checksum"},
    {"address", recordKey_t::address, shape_t::text, unnamed | untyped, unnamed | untyped,
     "first field of the sentence"},
    {"fields", recordKey_t::fields, shape_t::texts, unnamed | untyped, unnamed | untyped,
     "all other fields"},
    {"error", recordKey_t::error, shape_t::text, tracking | malformed, malformed,
     "why the record is malformed"},
    {"stated", recordKey_t::stated, shape_t::text, tracking | malformed, 0,
     "checksum that was sent"},
    {"computed", recordKey_t::computed, shape_t::text, tracking | malformed, 0, "right checksum"},
    {"suffix", recordKey_t::suffix, shape_t::text, withBytes, 0, "what follows the sentence"},
    {"raw", recordKey_t::raw, shape_t::text, withBytes, malformed,
     "bytes of the record, where values do not hold them all"}};
static_assert(std::size(keyRows) == recordKeyCount);

recordTable_t around(kindSet_t kind, std::string_view name, std::string_view meaning,
                     std::vector<recordColumn_t> values) {
    recordTable_t table;
    table.name = name;
    table.meaning = meaning;
    for (const keyRow_t& row : keyRows) {
        if (row.key == recordKey_t::value) {
            std::move(values.begin(), values.end(), std::back_inserter(table.columns));
        } else if ((row.kinds & kind) != 0) {
            table.columns.push_back({row.name,
                                     row.shape,
                                     "",
                                     "",
                                     row.meaning,
                                     row.key,
                                     (row.always & kind) == kind,
                                     {}});
        }
    }
    return table;
}

kindSet_t kindOf(typeIndex_t type) {
    if (type < sentenceCount) {
        return recordTypes[type].rowCount > 0 ? named : unnamed;
    }
    return type == typeOf<satellitesRecord_t> ? group
           : type == typeOf<trackingRecord_t> ? tracking
                                              : other;
}

shape_t shapeOfRow(const dictionaryRow_t& row) {
    switch (row.kind) {
    case valueKind_t::text:
    case valueKind_t::letter:
    case valueKind_t::rest: return shape_t::text;
    case valueKind_t::integer: return shape_t::integer;
    case valueKind_t::number:
    case valueKind_t::degrees:
    case valueKind_t::degreesPerSecond:
    case valueKind_t::latitude:
    case valueKind_t::longitude:
    case valueKind_t::duration:
    case valueKind_t::quantity: return shape_t::number;
    case valueKind_t::time: return shape_t::timeOfDay;
    case valueKind_t::date: return shape_t::date;
    case valueKind_t::texts: return shape_t::texts;
    case valueKind_t::group: return shape_t::members;
    }
    return shape_t::text;
}

std::vector<recordColumn_t> columnsOf(const std::vector<dictionaryRow_t>& rows) {
    std::vector<recordColumn_t> columns;
    for (const dictionaryRow_t& row : rows) {
        const unit_t& unit = row.kind == valueKind_t::degreesPerSecond ? rate : angle;
        recordColumn_t column;
        column.name = row.name;
        column.shape = shapeOfRow(row);
        column.unit = row.unit;
        column.radianUnit = row.isAngle() ? unit.radianName : row.unit;
        column.meaning = row.meaning;
        column.members = columnsOf(row.members);
        columns.push_back(std::move(column));
    }
    return columns;
}

template <typename Row>
recordColumn_t columnOf(const Row& row, shape_t shape) {
    recordColumn_t column;
    column.name = row.name;
    column.shape = shape;
    column.unit = row.unit.name;
    column.radianUnit = row.unit.radianName != nullptr ? row.unit.radianName : row.unit.name;
    column.meaning = row.meaning;
    return column;
}

recordTable_t tableOf(typeIndex_t type) {
    const recordType_t& listed = recordTypes[type];
    std::vector<recordColumn_t> values;
    for (const recordType_t::row_t& row : listed) {
        values.push_back(columnOf(row, row.shape));
        if (row.shape == shape_t::members) {
            forEachSatelliteColumn([&](auto column) {
                using column_t = decltype(column);
                values.back().members.push_back(
                    columnOf(column_t::row, shapeOf<typename column_t::value_t>()));
            });
        }
    }
    return around(kindOf(type), listed.name, listed.meaning, std::move(values));
}

} // namespace

recordTable_t tableNamed(std::string_view name, dictionaryHolder_t& dictionary) {
    const typeIndex_t type = typeOfName(name);
    if (type != noType && recordTypes[type].rowCount > 0) {
        return tableOf(type);
    }
    if (name == untypedTable) {
        return around(untyped, name, "sentences that kalo does not know", {});
    }
    if (name == malformedTable) {
        return around(malformed, name, "malformed records", {});
    }
    const dictionarySentence_t* const entry = dictionary.get().named(name);
    if (entry == nullptr) {
        return tableOf(type);
    }
    // A description may fit only some sentences of a type that the library recognises.
    const kindSet_t kind = type == noType ? named : named | unnamed;
    return around(kind, entry->name, entry->meaning, columnsOf(entry->rows));
}

bool isRecordKey(std::string_view name) {
    return std::any_of(std::begin(keyRows), std::end(keyRows), [&](const keyRow_t& row) {
        return row.name == name && row.key != recordKey_t::value;
    });
}
