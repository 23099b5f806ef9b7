#include "tools/command/tableArguments.h"

#include <algorithm>
#include <set>

#include "tools/command/nearest.h"
#include "tools/command/typeNames.h"
#include "tools/record/recordTable.h"
#include "tools/terminal/message.h"

namespace {

constexpr choice_t<format_t> formats[] = {
    {"json", format_t::json}, {"csv", format_t::csv}, {"tsv", format_t::tsv}};

} // namespace

option_t formatOption(format_t& format) {
    return choiceOption("--format", "FORMAT", formats, "Print JSON lines (the default) or tables",
                        [&format](format_t value) { format = value; });
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
    std::vector<std::string> names = allTypeNames(dictionary);
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
