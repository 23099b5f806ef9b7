// The class kalo._kalo.Memory: memory of a column, which NumPy reads by its array interface.
#pragma once

#include "python/object.h"
#include "tools/column/columnTable.h"

/// Adds the class to the module. False with an exception if that fails.
bool addMemoryType(PyObject* module);

/// `count` values in a column of this batch, which lives as long as the object. `type` is that of a
/// value in NumPy's notation, without the order of its bytes.
object_t memoryObject(const std::shared_ptr<const batch_t>& batch, const memory_t& memory,
                      std::size_t count, const char* type);
