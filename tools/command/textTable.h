// A table for people, fitted to the width of their terminal.
#pragma once

#include <string>
#include <vector>

class textTable_t {
public:
    struct column_t {
        std::string head;
        bool isNumber = false; ///< to the right; never cut
    };

    explicit textTable_t(std::vector<column_t> columns) : m_columns(std::move(columns)) {}

    /// One text a column.
    void add(std::vector<std::string> row) { m_rows.push_back(std::move(row)); }
    bool isEmpty() const { return m_rows.empty(); }

    /// With a line of heads, columns without any text left out. Where lines would be longer than
    /// `width`, texts are cut, the longest first; 0 is no limit.
    std::string text(std::size_t width) const;

private:
    std::vector<std::size_t> widths(std::size_t width) const;

    std::vector<column_t> m_columns;
    std::vector<std::vector<std::string>> m_rows;
};

/// The width of the terminal at a descriptor; 0 where there is none.
std::size_t terminalWidth(int descriptor);
