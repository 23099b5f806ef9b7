// The types of records as arguments: those that kalo decodes and those of a dictionary.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tools/command/arguments.h"
#include "tools/record/dictionaryFile.h"

/// The option that adds descriptions of sentences to `dictionary`, which must outlive it.
option_t sentencesOption(dictionaryHolder_t& dictionary);

/// The names of all types.
std::vector<std::string> allTypeNames(dictionaryHolder_t& dictionary);

/// The name of a type as it is printed; `name` may be in letters of any case. Throws
/// `usageError_t`, whose text begins with `where`.
std::string typeNameOfArgument(const std::string& name, dictionaryHolder_t& dictionary,
                               const char* where = "");
