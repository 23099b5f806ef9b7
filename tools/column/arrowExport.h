// Hands columns to other programs as Arrow data. Nothing is copied: what is handed out keeps the
// columns alive until it is released, in any order.
#pragma once

#include <memory>
#include <vector>

#include "tools/column/arrowData.h"
#include "tools/column/columnTable.h"

/// Describes the columns of a table, as the members of an object. Their units and meanings are
/// metadata with the keys `unit` and `meaning`.
void exportTypes(const columnTypes_t& types, arrowSchema_t& out);

/// The rows of a batch, as an array of objects.
void exportBatch(const std::shared_ptr<const batch_t>& batch, arrowArray_t& out);

/// Batches of these types, one after another.
void exportBatches(std::shared_ptr<const columnTypes_t> types,
                   std::vector<std::shared_ptr<const batch_t>> batches, arrowStream_t& out);
