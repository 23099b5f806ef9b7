// What the benchmark measures of the columns.
#pragma once

#include "bench/passes.h"

/// All records of a log into columns, which are dropped part by part. The lines must be neighbours
/// in memory. Returns the number of rows.
unsigned long columnsPass(const sentences_t& lines);
