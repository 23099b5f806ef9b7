// All types of records: first the sentences that the library recognises, then the others.
// Everything that concerns all types is made from this list.
#pragma once

#include <array>
#include <tuple>
#include <utility>

#include "kalo/nmea/sentences.h"
#include "kalo/ntrip/ntripRecordType.h"
#include "tools/record/motionRows.h"
#include "tools/record/record.h"
#include "tools/record/satelliteRows.h"
#include "tools/record/sentenceRows.h"
#include "tools/record/shape.h"
#include "tools/record/tableRows.h"
#include "tools/record/trackingRows.h"

constexpr std::size_t sentenceCount = std::tuple_size_v<decltype(kalo::sentences)>;

/// The record of the sentence at `index` in the library's list.
template <std::size_t index>
struct sentenceRecord_t {
    static constexpr const auto& sentence = std::get<index>(kalo::sentences);
    using view_t = typename std::tuple_element_t<index, decltype(kalo::sentences)>::view_t;
    static constexpr std::string_view name = sentence.name;
    static constexpr std::string_view meaning = sentence.meaning;
    static constexpr const auto& rows = valuesOf_t<view_t>::rows;
};

/// A type of record as a value that can be passed to a function.
template <typename... Record>
struct list_t {};

template <std::size_t... index>
list_t<sentenceRecord_t<index>..., satellitesRecord_t, motionRecord_t, trackingRecord_t,
       streamRecord_t, casterRecord_t, networkRecord_t, tableLineRecord_t>
    listOfRecords(std::index_sequence<index...> /*sentences*/);

using allRecords_t = decltype(listOfRecords(std::make_index_sequence<sentenceCount>{}));

/// An array of what `make(Record{})` gives for each type, in the order of their indices.
template <typename Make, typename... Record>
constexpr auto arrayOfRecords(Make make, list_t<Record...> /*all*/) {
    return std::array{make(Record{})...};
}
template <typename Make>
constexpr auto arrayOfRecords(Make make) {
    return arrayOfRecords(make, allRecords_t{});
}

template <typename Record, typename... All>
constexpr typeIndex_t indexOf(list_t<All...> /*all*/) {
    typeIndex_t index = 0;
    typeIndex_t found = noType;
    ((found = std::is_same_v<Record, All> ? index : found, ++index), ...);
    return found;
}
template <typename Record>
constexpr typeIndex_t typeOf = indexOf<Record>(allRecords_t{});

/// The type of a sentence; `noType` for `msgTypeUnknown`.
constexpr typeIndex_t typeOfSentence(kalo::nmeaMsgType_t type) {
    return static_cast<typeIndex_t>(type) - 1;
}
static_assert(typeOfSentence(kalo::msgTypeUnknown) == noType);

/// The type of a line of a sourcetable.
typeIndex_t typeOfTableLine(kalo::ntripRecordType_t line);

template <typename Record>
constexpr bool hasValues = rowCountOf<Record> > 0;

/// A type for listings.
struct recordType_t {
    struct row_t {
        const char* name;
        unit_t unit;
        fieldSet_t fields;
        const char* meaning;
        const char* place;
        shape_t shape;
    };

    std::string_view name;
    std::string_view meaning;
    const row_t* rows; ///< null for a sentence without a view
    std::size_t rowCount;

    const row_t* begin() const { return rows; }
    const row_t* end() const { return rows + rowCount; }
};

/// All types by their index.
extern const recordType_t* const recordTypes;
constexpr std::size_t recordTypeCount = arrayOfRecords([](auto) { return 0; }).size();

/// The type of this name, in letters of any case; `noType` if there is none.
typeIndex_t typeOfName(std::string_view name);

/// The place of a value as text: "2,3" or "4-8".
std::string placeOf(const recordType_t::row_t& row);
std::string placeOf(fieldSet_t fields);

/// The name of a record's type; empty if it has none.
std::string_view typeNameOf(const record_t& record);

/// Whether a record has named values.
bool hasNamedValues(const record_t& record);

template <typename Record, typename Visitor>
void visitAs(const record_t& record, scratch_t& scratch, Visitor& visitor) {
    using view_t = typename Record::view_t;
    const auto visit = [&](const view_t& view) {
        visitor(Record{}, recordView_t<view_t>{view, record.clue, record.text, scratch});
    };
    if constexpr (std::is_base_of_v<kalo::nmeaMsg_t, view_t>) {
        visit(view_t(*std::get<const kalo::nmeaFormat_t*>(record.content)));
    } else if constexpr (hasValues<Record>) {
        visit(*std::get<const view_t*>(record.content));
    }
}

template <typename Visitor, typename... Record>
constexpr auto visitorsOf(list_t<Record...> /*all*/) {
    return std::array{visitAs<Record, Visitor>...};
}

/// Calls `visitor(Record{}, recordView)` with the type of the record and what its values are read
/// from. Returns whether the record has named values.
template <typename Visitor>
bool visitRecord(const record_t& record, scratch_t& scratch, Visitor visitor) {
    static constexpr auto visitors = visitorsOf<Visitor>(allRecords_t{});
    if (record.type == noType || recordTypes[record.type].rowCount == 0) {
        return false;
    }
    visitors[record.type](record, scratch, visitor);
    return true;
}
