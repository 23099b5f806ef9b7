#include "tools/command/tableArguments.h"

#include <algorithm>
#include <set>

#include "tools/command/nearest.h"
#include "tools/record/recordTable.h"
#include "tools/record/registry.h"
#include "tools/terminal/message.h"

namespace {

format_t formatOfArgument(const std::string& text) {
    constexpr struct {
        std::string_view name;
        format_t format;
    } formats[] = {{"json", format_t::json}, {"csv", format_t::csv}, {"tsv", format_t::tsv}};
    for (const auto& row : formats) {
        if (row.name == text) {
            return row.format;
        }
    }
    throw usageError_t("no such format: " + printable(text) + " (expected json, csv or tsv)");
}

} // namespace

option_t formatOption(format_t& format) {
    return {"--format", "FORMAT", "json: JSON lines (the default); csv or tsv: tables",
            [&format](const std::string& text) { format = formatOfArgument(text); }};
}

option_t columnsOption(std::vector<std::string>& columns) {
    return {"--columns", "A,B", "Print only these columns of a table, in this order",
            [&columns](const std::string& text) {
                if (std::find(columns.begin(), columns.end(), text) != columns.end()) {
                    throw usageError_t(printable(text) + " is given twice");
                }
                columns.push_back(text);
            },
            times_t::list};
}

std::vector<std::string> allTables(dictionaryHolder_t& dictionary) {
    std::vector<std::string> names;
    for (typeIndex_t i = 0; i < recordTypeCount; ++i) {
        if (dictionary.get().named(recordTypes[i].name) == nullptr) {
            names.emplace_back(recordTypes[i].name);
        }
    }
    for (const dictionarySentence_t& entry : dictionary.get().sentences()) {
        names.push_back(entry.name);
    }
    names.emplace_back(untypedTable);
    names.emplace_back(malformedTable);
    return names;
}

void checkColumns(const tableOptions_t& options, const std::vector<std::string>& types,
                  dictionaryHolder_t& dictionary) {
    if (options.columns.empty()) {
        return;
    }
    std::set<std::string> known;
    for (const std::string& type : types.empty() ? allTables(dictionary) : types) {
        const recordTable_t table = tableNamed(type, dictionary);
        for (tableColumn_t& column : tableColumns(table, options.values)) {
            known.insert(std::move(column.name));
        }
    }
    for (const std::string& name : options.columns) {
        if (known.count(name) == 0) {
            throw usageError_t("--columns: no such column: " + printable(name) +
                               suggestion(name, {known.begin(), known.end()}));
        }
    }
}
