// A row of the record table: one value of a record, with its name, its unit, the fields that it
// reads, its meaning and its reader. The reader is a template argument, so that a row knows the
// type of its value when it is compiled and a consumer of values is a template over the rows.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "tools/record/clue.h"
#include "tools/record/sent.h"

struct unit_t {
    const char* name;
    const char* radianName = nullptr; ///< the name with --radians; null if it is not an angle
};

constexpr unit_t noUnit{""};
constexpr unit_t metre{"m"};
constexpr unit_t second{"s"};
constexpr unit_t minute{"min"};
constexpr unit_t metrePerSecond{"m/s"};
constexpr unit_t metrePerSecondSquared{"m/s2"};
constexpr unit_t asSent{"as sent"};
constexpr unit_t degreesAsSent{"deg"};
constexpr unit_t bitPerSecond{"bit/s"};
constexpr unit_t decibelHertz{"dB-Hz"};
constexpr unit_t angle{"deg", "rad"};
constexpr unit_t rate{"deg/s", "rad/s"};

template <typename... Index>
constexpr fieldSet_t fields(Index... index) {
    return ((fieldSet_t{1} << index) | ...);
}

constexpr fieldSet_t from(unsigned first) { return ~fieldSet_t{0} << first; }

constexpr fieldSet_t range(unsigned first, unsigned last) { return from(first) & ~from(last + 1); }

/// The lowest field of a set that is not empty.
constexpr unsigned firstOf(fieldSet_t set) {
    unsigned index = 0;
    while ((set >> index & 1) == 0) {
        ++index;
    }
    return index;
}

/// The source of a record's values: its view, and what was decoded once for several uses.
template <typename View>
struct recordView_t {
    using view_t = View;

    const View& view;
    const clue_t& clue;
    std::string_view text; ///< the record itself
    scratch_t& scratch;
};

/// The result of reading a value.
enum class reading_t {
    absent,  ///< nothing was sent, or the value can be left out without loss
    present, ///< the value was decoded
    lost,    ///< something was sent but did not decode
    partly   ///< decoded, except for a part of what was sent
};

template <typename View, typename T>
View viewOf(bool (View::*)(T&) const);

// The type that a reader gives: that of the last parameter of a function, or of the parameter of an
// accessor.
template <typename View, typename T>
T outputOf(bool (View::*)(T&) const);
template <typename Result, typename Input, typename T>
T outputOf(Result (*)(const Input&, T&));

/// One value. `reader` is an accessor of the record's view, or a function of the record view or of
/// one of its parts; it returns true or false, or a `reading_t`. `check` also tests the text of the
/// first field; a text that it refuses counts as not decoded.
template <auto reader, auto check = nullptr>
struct row_t {
    using value_t = std::remove_cv_t<decltype(outputOf(reader))>;

    const char* name;
    unit_t unit;
    fieldSet_t fields;
    const char* meaning;
    const char* place = nullptr; ///< its place in a record without numbered fields

    template <typename RecordView>
    reading_t read(const RecordView& record, value_t& out) const {
        using reader_t = decltype(reader);
        if constexpr (std::is_invocable_v<reader_t, const clue_t&, value_t&>) {
            return judge(record, reader(record.clue, out), out);
        } else if constexpr (std::is_invocable_v<reader_t, const RecordView&, value_t&>) {
            return judge(record, reader(record, out), out);
        } else {
            return judge(record, std::invoke(reader, record.view, out), out);
        }
    }

private:
    template <typename RecordView>
    reading_t judge(const RecordView& /*record*/, reading_t reading, const value_t& /*out*/) const {
        return reading;
    }

    template <typename RecordView>
    reading_t judge(const RecordView& record, bool decoded, const value_t& out) const {
        if (decoded && isFinite(out) && isPlausible(record)) {
            return isEmpty(out) ? reading_t::absent : reading_t::present;
        }
        return isSent(record.view, fields) ? reading_t::lost : reading_t::absent;
    }

    static bool isFinite(const value_t& value) {
        if constexpr (std::is_floating_point_v<value_t>) {
            return std::isfinite(value);
        } else {
            return true;
        }
    }

    static bool isEmpty(const value_t& value) {
        if constexpr (std::is_convertible_v<value_t, std::string_view>) {
            return value.empty();
        } else {
            return false;
        }
    }

    template <typename RecordView>
    bool isPlausible(const RecordView& record) const {
        if constexpr (std::is_same_v<decltype(check), std::nullptr_t>) {
            return true;
        } else {
            return check(record.view.field(firstOf(fields))->toString());
        }
    }
};

template <typename Record>
using rowsOf_t = std::decay_t<decltype(Record::rows)>;

template <typename Record>
constexpr std::size_t rowCountOf = std::tuple_size_v<rowsOf_t<Record>>;

/// A row as a type; everything about it is known at compile time.
template <typename Record, std::size_t index>
struct column_t {
    static constexpr const auto& row = std::get<index>(Record::rows);
    static constexpr std::size_t position = index;
    using value_t = typename std::tuple_element_t<index, rowsOf_t<Record>>::value_t;
};

/// Reads the value of one row into a sink: `sink.value(column, value)` if it is present, otherwise
/// `sink.none(column)`. Returns whether something that was sent is lost.
template <typename Column, typename RecordView, typename Sink>
bool readValue(Column column, const RecordView& record, Sink& sink) {
    using value_t = typename Column::value_t;
    value_t trivial{};
    value_t& value = record.scratch.place(trivial);
    const reading_t reading = Column::row.read(record, value);
    if (reading == reading_t::present || reading == reading_t::partly) {
        sink.value(column, value);
    } else {
        sink.none(column);
    }
    return reading == reading_t::lost || reading == reading_t::partly;
}

template <typename Record, typename RecordView, typename Sink, std::size_t... index>
bool readValues(const RecordView& record, Sink& sink, std::index_sequence<index...> /*all*/) {
    bool lost = false;
    ((lost = readValue(column_t<Record, index>{}, record, sink) || lost), ...);
    return lost;
}

/// Reads all values of a record into a sink, in their order. Returns whether something that was
/// sent is lost.
template <typename Record, typename RecordView, typename Sink>
bool readValues(const RecordView& record, Sink& sink) {
    return readValues<Record>(record, sink, std::make_index_sequence<rowCountOf<Record>>{});
}
