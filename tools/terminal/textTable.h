// A text table that fits the width of the terminal.
#pragma once

#include <string>
#include <vector>

class textTable_t {
public:
    /// What may happen to a column if the lines would be too long.
    enum class width_t { kept, cut, leftOut };

    struct column_t {
        std::string head;
        bool isNumber = false; ///< aligned right
        width_t width = width_t::kept;
    };

    explicit textTable_t(std::vector<column_t> columns) : m_columns(std::move(columns)) {}

    /// One text for each column.
    void add(std::vector<std::string> row) { m_rows.push_back(std::move(row)); }
    bool isEmpty() const { return m_rows.empty(); }
    const std::vector<column_t>& columns() const { return m_columns; }
    const std::vector<std::vector<std::string>>& rows() const { return m_rows; }

    /// Prints a line of headings, then the rows, for this descriptor. Columns without any text are
    /// left out. If lines would be longer than the terminal is wide, texts that may be are cut, the
    /// longest first; then columns that may be are left out, the last one first.
    std::string text(int descriptor) const;

private:
    std::vector<std::size_t> widths(std::size_t width) const;

    std::vector<column_t> m_columns;
    std::vector<std::vector<std::string>> m_rows;
};
