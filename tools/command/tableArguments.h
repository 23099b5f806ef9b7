// The arguments that choose the columns of tables.
#pragma once

#include <string>
#include <vector>

#include "tools/command/arguments.h"
#include "tools/output/tableWriter.h"
#include "tools/record/dictionaryFile.h"

/// The forms in which records can be printed.
enum class format_t { json, csv, tsv };

/// `--format`.
option_t formatOption(format_t& format);
/// `--columns`.
option_t columnsOption(std::vector<std::string>& columns);

/// The names of all tables: those of the types, then the two of records without a type.
std::vector<std::string> allTables(dictionaryHolder_t& dictionary);

/// Throws `usageError_t` when one of `options.columns` is no column of any of the tables of these
/// types; no types are all.
void checkColumns(const tableOptions_t& options, const std::vector<std::string>& types,
                  dictionaryHolder_t& dictionary);
