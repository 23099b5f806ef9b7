// `kalo schema`: what the records of `decode` look like, for programs.
#pragma once

#include <string>
#include <vector>

#include "tools/command/tableArguments.h"
#include "tools/record/dictionaryFile.h"

struct schemaOptions_t {
    std::vector<std::string> types; ///< names of tables; none: all
    dictionaryHolder_t dictionary;
    bool isForDuckdb = false;         ///< column types of one table; else JSON Schema
    format_t format = format_t::json; ///< that DuckDB is to read
    tableOptions_t table;             ///< the columns, and how values are printed
};

/// Prints the description. Returns the exit status.
int schemaCommand(schemaOptions_t& options);
