// A column of values of one type, in the layout of Arrow.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/column/memory.h"

/// How the values of a column are laid out.
enum class form_t {
    boolean,
    integer, ///< of 64 bits
    number,  ///< a double
    date,    ///< days since 1970-01-01
    instant, ///< microseconds since 1970-01-01 in UTC
    text,    ///< UTF-8
    bytes,
    list,  ///< of the one member of its type
    object ///< with a value of each member
};

struct columnType_t {
    std::string name;
    form_t form = form_t::text;
    std::string unit;
    std::string meaning;
    std::vector<columnType_t> members;
};

/// The values of a column, row by row; those of a list or an object are columns as well. Reserve
/// room for a row first. A row in which nothing is set is null. When a row is complete, call
/// `endRow`, row after row.
class array_t {
public:
    explicit array_t(const columnType_t& type);

    form_t form() const { return m_form; }
    bool hasOffsets() const {
        return m_form == form_t::text || m_form == form_t::bytes || m_form == form_t::list;
    }
    bool hasMemory() const { return m_form != form_t::list && m_form != form_t::object; }

    void reserve(std::size_t rows) {
        if (rows > m_capacity) {
            grow(rows);
        }
    }

    void setFlag(std::size_t row, bool value) {
        setPresent(row);
        if (value) {
            setBit(m_values, row);
        }
    }
    void setInteger(std::size_t row, std::int64_t value) { put(row, value); }
    void setNumber(std::size_t row, double value) { put(row, value); }
    void setInstant(std::size_t row, std::int64_t microseconds) { put(row, microseconds); }
    void setDate(std::size_t row, std::int32_t days) { put(row, days); }
    /// Text of the input: what is not UTF-8 is escaped as in JSON.
    void setText(std::size_t row, std::string_view bytes);
    void setBytes(std::size_t row, std::string_view bytes);
    /// Of a list or an object, whose items or members are set by themselves.
    void setPresent(std::size_t row) {
        m_hasValues = true;
        setBit(m_validity, row);
    }

    array_t& member(std::size_t index) { return m_members[index]; }
    /// Appends an item to the list of the current row. Returns its row in the column of the items,
    /// which is null until it is set.
    std::size_t addItem();
    array_t& items() { return m_members[0]; }

    void endRow(std::size_t row) {
        if (m_hasValues && !isOfFixedSize()) {
            endVariableRow(row);
        }
    }
    bool isOfFixedSize() const { return !hasOffsets() && m_form != form_t::object; }

    /// No row follows: gives back memory that is not used.
    void finish(std::size_t rows);
    /// How much memory the first `rows` rows take.
    std::size_t bytes(std::size_t rows) const;
    /// Whether its memory comes near to what the offsets of 32 bits can count.
    bool isLarge() const;

    // The memory, after `finish`.
    std::size_t rows() const { return m_rows; }
    std::size_t nullCount() const { return m_nullCount; }
    const memory_t& validity() const { return m_validity; } ///< a bit for each row, lowest first
    const memory_t& offsets() const { return m_offsets; }   ///< of 32 bits, one more than rows
    const memory_t& values() const { return m_values; }
    const std::vector<array_t>& members() const { return m_members; }

    /// A number that differs, as a rule, if the values do; `begin` joins several columns.
    std::uint64_t digest(std::uint64_t begin) const;

    bool isPresent(std::size_t row) const { return bit(m_validity, row); }
    bool flag(std::size_t row) const { return bit(m_values, row); }
    /// The bytes of a text, or the rows of the items of a list.
    std::size_t begin(std::size_t row) const { return offset(row); }
    std::size_t end(std::size_t row) const { return offset(row + 1); }

private:
    static void setBit(const memory_t& memory, std::size_t row) {
        memory.as<unsigned char>()[row / 8] |= static_cast<unsigned char>(1U << row % 8);
    }
    static bool bit(const memory_t& memory, std::size_t row) {
        return (memory.as<unsigned char>()[row / 8] >> row % 8 & 1U) != 0;
    }
    std::size_t offset(std::size_t row) const {
        return static_cast<std::size_t>(m_offsets.as<std::int32_t>()[row]);
    }
    template <typename T>
    void put(std::size_t row, T value) {
        setPresent(row);
        m_values.as<T>()[row] = value;
    }
    std::size_t valueBytes(std::size_t rows) const;
    void grow(std::size_t rows);
    void endVariableRow(std::size_t row);
    char* room(std::size_t size);

    form_t m_form;
    bool m_hasValues = false;   // in any row
    std::size_t m_capacity = 0; // rows
    std::size_t m_used = 0;     // bytes of text, items of a list
    std::size_t m_rows = 0;
    std::size_t m_nullCount = 0;
    memory_t m_validity;
    memory_t m_offsets;
    memory_t m_values;
    std::vector<array_t> m_members;
};
