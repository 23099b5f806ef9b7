// Records as lines of the tables of their types, in memory.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "tools/output/tableWriter.h"
#include "tools/record/byTable.h"
#include "tools/record/dictionaryFile.h"

/// One table: its writer, and the lines that it has written, without its head.
struct linesOfTable_t {
    std::string name;
    tableWriter_t writer;
    buffer_t lines;
};

class tableLines_t {
public:
    using tables_t = byTable_t<linesOfTable_t>::objects_t;

    /// The references must outlive the object.
    tableLines_t(const tableOptions_t& options, dictionaryHolder_t& dictionary)
        : m_options(options), m_dictionary(dictionary) {}

    /// The input of the records that follow.
    void setSource(std::string_view name) { m_source = name; }
    /// Appends the record to the lines of its table, which is returned. A table without columns has
    /// no lines.
    linesOfTable_t& write(const record_t& record, scratch_t& scratch);

    /// Drops all lines.
    void clear();

    /// The table of this name, which may have no lines yet.
    linesOfTable_t& named(std::string_view name);
    /// By their names.
    const tables_t& tables() const { return m_tables.objects(); }

private:
    std::unique_ptr<linesOfTable_t> make(std::string_view name) const;

    const tableOptions_t& m_options;
    dictionaryHolder_t& m_dictionary;
    byTable_t<linesOfTable_t> m_tables;
    std::string m_source;
};
