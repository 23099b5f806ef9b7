// Texts in tables: comma-separated by RFC 4180, or with tabs between.
#pragma once

#include <string_view>

#include "tools/output/buffer.h"

enum class tableFormat_t { csv, tsv };

constexpr char separatorOf(tableFormat_t format) {
    return format == tableFormat_t::csv ? ',' : '\t';
}

/// CR LF by RFC 4180; what splits lines at tabs wants LF alone.
constexpr std::string_view lineEndOf(tableFormat_t format) {
    return format == tableFormat_t::csv ? "\r\n" : "\n";
}

/// Appends `bytes` as one cell. As in JSON, valid UTF-8 stays as it is, a byte of anything else
/// becomes the four characters \xHH and a backslash is doubled; a control character becomes \xHH,
/// too. Tab, LF and CR stay as they are in CSV, in quotes where they need them, and become \t, \n
/// and \r in TSV.
void writeCell(buffer_t& out, std::string_view bytes, tableFormat_t format);
/// Appends a JSON text as one cell, its backslashes as they are in CSV.
void writeJsonCell(buffer_t& out, std::string_view json, tableFormat_t format);
