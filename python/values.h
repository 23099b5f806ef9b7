// Python objects of the values of a column.
#pragma once

#include "python/object.h"
#include "tools/column/columnTable.h"

/// A list of the values of a column: None, bool, int, float, str, bytes, list or dict. An instant
/// is the number of its microseconds, a date that of its days. Null with an exception if memory
/// runs out.
PyObject* listOfValues(const columnType_t& type, const array_t& array);
