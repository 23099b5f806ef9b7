// `kalo fields`: the record table for people.
#pragma once

#include <vector>

#include "tools/record/record.h"

/// Lists the values of these types, or of all if there are none. Returns the exit status.
int fieldsCommand(std::vector<typeIndex_t> types);
