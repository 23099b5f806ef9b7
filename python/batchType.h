// The class kalo._kalo.Batch: rows of a table, which other programs take as Arrow data.
#pragma once

#include "python/object.h"
#include "tools/column/columnTable.h"

/// Adds the class to the module. False with an exception if that fails.
bool addBatchType(PyObject* module);

object_t batchObject(const std::shared_ptr<const batch_t>& batch);

/// The function `stream` of the module: a list of batches as one stream of Arrow data.
PyObject* streamOfBatches(PyObject* module, PyObject* batches);
