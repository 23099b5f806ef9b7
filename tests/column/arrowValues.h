// Reads the values of Arrow arrays as text, knowing nothing but the structures, and checks them
// against the rules of the format.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tools/column/arrowData.h"

/// The value of a row: null, true, 12, 0.5, "text", [1,2], {"key":1}.
std::string valueText(const arrowSchema_t& schema, const arrowArray_t& array, std::int64_t row);

/// Reads all the memory that an array has. Returns what is wrong; empty if nothing is.
std::string faultOf(const arrowSchema_t& schema, const arrowArray_t& array);

/// The child of this name; null if there is none.
const arrowArray_t* childOf(const arrowSchema_t& schema, const arrowArray_t& array,
                            std::string_view name);

/// The value of a row of a child; "no column" if there is none.
std::string childText(const arrowSchema_t& schema, const arrowArray_t& array, std::string_view name,
                      std::int64_t row);
