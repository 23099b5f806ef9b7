// What a value is when it is printed, whatever its type in the program.
#pragma once

#include <string_view>
#include <type_traits>
#include <vector>

#include "tools/record/clue.h"

enum class shape_t {
    text,
    integer,
    number,
    boolean,
    date,      ///< as it was sent, be it in the calendar or not
    timeOfDay, ///< as it was sent
    instant,
    tags,     ///< an object of texts and integers
    integers, ///< a list
    texts,    ///< a list
    members   ///< a list of objects
};

/// The shape of the values of a type.
template <typename T>
constexpr shape_t shapeOf() {
    if constexpr (std::is_same_v<T, bool>) {
        return shape_t::boolean;
    } else if constexpr (std::is_same_v<T, char>) {
        return shape_t::text;
    } else if constexpr (std::is_integral_v<T>) {
        return shape_t::integer;
    } else if constexpr (std::is_floating_point_v<T>) {
        return shape_t::number;
    } else if constexpr (std::is_same_v<T, kalo::date_t>) {
        return shape_t::date;
    } else if constexpr (std::is_same_v<T, sentTime_t>) {
        return shape_t::timeOfDay;
    } else if constexpr (std::is_same_v<T, std::vector<unsigned>>) {
        return shape_t::integers;
    } else if constexpr (std::is_same_v<T, satelliteList_t>) {
        return shape_t::members;
    } else {
        static_assert(std::is_convertible_v<T, std::string_view>);
        return shape_t::text;
    }
}
