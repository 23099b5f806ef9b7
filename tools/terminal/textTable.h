// A text table that fits the width of the terminal.
#pragma once

#include <string>
#include <vector>

class textTable_t {
public:
    struct column_t {
        std::string head;
        bool isNumber = false; ///< aligned right, never cut
    };

    explicit textTable_t(std::vector<column_t> columns) : m_columns(std::move(columns)) {}

    /// One text for each column.
    void add(std::vector<std::string> row) { m_rows.push_back(std::move(row)); }
    bool isEmpty() const { return m_rows.empty(); }
    const std::vector<column_t>& columns() const { return m_columns; }
    const std::vector<std::vector<std::string>>& rows() const { return m_rows; }

    /// Prints a line of headings, then the rows, for this descriptor. Columns without any text are
    /// left out. If lines would be longer than the terminal is wide, texts are cut, the longest
    /// first.
    std::string text(int descriptor) const;

private:
    std::vector<std::size_t> widths(std::size_t width) const;

    std::vector<column_t> m_columns;
    std::vector<std::vector<std::string>> m_rows;
};
