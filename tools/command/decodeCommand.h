// `kalo decode`: records to JSON lines or tables.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/command/recordInputs.h"
#include "tools/command/recordPieces.h"
#include "tools/command/tableArguments.h"
#include "tools/output/jsonWriter.h"
#include "tools/output/output.h"
#include "tools/output/tableWriter.h"

/// Which records are printed; an empty list chooses all.
struct recordChoice_t {
    std::vector<std::string> types;   ///< names as they are printed
    std::vector<std::string> talkers; ///< in capital letters
    std::vector<std::string> prefixes;
    bool onlyValid = false;
    bool onlyMalformed = false;
    std::optional<double> since; ///< Unix seconds, as is the next
    std::optional<double> until;
};

struct decodeOptions_t {
    std::vector<std::string> files; ///< "-" is standard input
    outputOptions_t output;
    inputOptions_t read;
    pieceOptions_t pieces;
    recordChoice_t choice;
    valueOptions_t values;
    format_t format = format_t::json;
    tableOptions_t table;     ///< its `values` are those above
    std::string outputFolder; ///< of tables, one a type; empty: standard output
    bool quiet = false;
};

/// Returns the exit status.
int decodeCommand(const decodeOptions_t& options);
