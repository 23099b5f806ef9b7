// `kalo fields`: lists the record types and their values.
#pragma once

#include <string>
#include <vector>

#include "tools/record/dictionaryFile.h"

struct fieldsOptions_t {
    std::vector<std::string> types; ///< names as they are printed; empty: all types
    dictionaryHolder_t dictionary;
    bool asToml = false; ///< the descriptions themselves
};

/// Lists the values of the types. Returns the exit status.
int fieldsCommand(fieldsOptions_t& options);
