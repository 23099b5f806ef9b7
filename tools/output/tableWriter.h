// Writes the records of one type as the lines of a table.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/output/buffer.h"
#include "tools/output/tableText.h"
#include "tools/output/tagMembers.h"
#include "tools/output/valueText.h"
#include "tools/record/record.h"
#include "tools/record/recordTable.h"

/// A column of a table: a key of the records, or a member of a list of objects, whose name is
/// that of the list, a point, and its own.
struct tableColumn_t {
    std::string name;
    const recordColumn_t* column; ///< in the description of the table
    bool isMember = false;        ///< of a list, whose members have a line each
};

/// The columns of a table in their order. `records` must outlive them.
std::vector<tableColumn_t> tableColumns(const recordTable_t& records, const valueOptions_t& values);

struct tableOptions_t {
    tableFormat_t format = tableFormat_t::csv;
    bool hasUnits = false;            ///< a second line of heads
    std::vector<std::string> columns; ///< in this order; none: all
    valueOptions_t values;
};

/// Those that are printed, in the order of `options`. Names that the table does not have are left
/// out.
std::vector<tableColumn_t> chosenColumns(const recordTable_t& records,
                                         const tableOptions_t& options);

/// The unit in which a value is printed; empty without one.
std::string unitOf(const recordColumn_t& column, const valueOptions_t& values);

class tableWriter_t {
public:
    /// `records` describes the type. Names of `options.columns` that it does not have are left out.
    tableWriter_t(recordTable_t records, const tableOptions_t& options);
    tableWriter_t(const tableWriter_t&) = delete;
    tableWriter_t& operator=(const tableWriter_t&) = delete;

    bool hasColumns() const { return !m_chosen.empty(); }
    /// Appends the names of the columns, and their units if they are wanted.
    void writeHead(buffer_t& out) const;
    /// Appends the lines of a record of the type; `source` is the name of its input.
    void write(const record_t& record, std::string_view source, scratch_t& scratch, buffer_t& out);

private:
    class sink_t;

    // A text within `m_text`.
    struct cell_t {
        std::size_t begin = 0;
        std::size_t end = 0;

        std::size_t size() const { return end - begin; }
    };
    // What is known of a column for writing it.
    struct place_t {
        bool isChosen = false;
        bool isMember = false;
        std::size_t cell = 0; // of a member in the cells of one line, of another among the others
    };

    template <typename Write>
    void set(cell_t& cell, Write write) {
        cell.begin = m_text.size();
        write();
        cell.end = m_text.size();
    }
    template <typename Write>
    void setKey(recordKey_t key, Write write) {
        const std::size_t column = m_keyColumns[static_cast<std::size_t>(key)];
        if (column < m_places.size() && m_places[column].isChosen) {
            set(m_cells[m_places[column].cell], write);
        }
    }
    void setKeyText(recordKey_t key, std::string_view text) {
        if (!text.empty()) {
            setKey(key, [&] { writeCell(m_text, text, m_options.format); });
        }
    }
    void setBegin(const record_t& record, std::string_view source);
    void setInstant(const instant_t& instant);
    void setFault(const record_t& record);
    std::string_view textOf(const cell_t& cell) const {
        return m_text.text().substr(cell.begin, cell.size());
    }
    std::string_view textOf(const place_t& place, std::size_t line) const;
    template <typename TextOf>
    void writeLine(buffer_t& out, TextOf textOf) const;

    recordTable_t m_records;
    tableOptions_t m_options;
    std::vector<tableColumn_t> m_columns;
    std::vector<std::size_t> m_chosen;       // columns, in the order of the line
    std::vector<place_t> m_places;           // of the columns
    std::vector<std::size_t> m_keyColumns;   // by key
    std::vector<std::size_t> m_valueColumns; // by position of the value; of a list its first
    std::size_t m_memberCount = 0;           // columns of members

    buffer_t m_text;                   // of the cells of one record
    std::vector<cell_t> m_cells;       // that all lines of a record share
    std::vector<cell_t> m_memberCells; // line by line
    std::size_t m_lines = 0;
    tagMembers_t m_tags;
    buffer_t m_object;
};
