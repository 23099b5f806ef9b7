// The records of one type as columns.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tools/column/array.h"
#include "tools/record/record.h"
#include "tools/record/recordTable.h"

struct columnOptions_t {
    bool radians = false;             ///< angles as the library gives them
    bool raw = false;                 ///< the bytes of every record
    std::vector<std::string> columns; ///< in this order; none: all
};

/// The names and types of columns.
using columnTypes_t = std::vector<columnType_t>;

/// The columns of a type of record in their order: what stands in front of the values, the values,
/// and what stands behind them. Names of `options.columns` that the type does not have are left
/// out.
columnTypes_t columnTypes(const recordTable_t& records, const columnOptions_t& options);

/// Which rows a batch holds. Other rows of the same inputs have another place.
struct batchPlace_t {
    std::string source;            ///< of the first row
    std::uint64_t firstOffset = 0; ///< in its input
    std::uint64_t lastOffset = 0;  ///< of the last row
    std::uint64_t rowsInFront = 0; ///< in the same table
};

/// Rows that do not change any more.
struct batch_t {
    std::shared_ptr<const columnTypes_t> types;
    std::vector<array_t> columns; ///< in the order of `types`
    std::size_t rows = 0;
    batchPlace_t place;
};

/// A batch without rows.
std::shared_ptr<const batch_t> emptyBatch(std::shared_ptr<const columnTypes_t> types);

class columnTable_t {
public:
    columnTable_t(const recordTable_t& records, const columnOptions_t& options);
    columnTable_t(const columnTable_t&) = delete;
    columnTable_t& operator=(const columnTable_t&) = delete;

    /// Adds a record of the type; `source` is the name of its input.
    void add(const record_t& record, std::string_view source, scratch_t& scratch);

    /// Hands over the rows since the last call, in pieces of bounded size; none if there are none.
    std::vector<std::shared_ptr<const batch_t>> take();

    /// How much memory the rows take that `take` will hand over.
    std::size_t bytes() const;

    const std::shared_ptr<const columnTypes_t>& types() const { return m_types; }

private:
    class sink_t;

    std::size_t openBytes() const;
    void begin();
    void endRow();
    void close();
    array_t* keyColumn(recordKey_t key) const { return m_keys[static_cast<std::size_t>(key)]; }
    void setText(recordKey_t key, std::string_view text);
    void setNumber(recordKey_t key, std::uint64_t number);
    void setReceived(const record_t& record);
    void setTags(std::string_view tags);
    void setInstant(const instant_t& instant);
    void setFault(const record_t& record);
    void setFields(const kalo::nmeaFormat_t& sentence);

    bool m_radians;
    bool m_raw;
    std::shared_ptr<const columnTypes_t> m_types;
    std::vector<std::size_t> m_keyPlaces;   // of the columns, by key
    std::vector<std::size_t> m_valuePlaces; // of the columns, by position of the value
    std::vector<array_t> m_columns;         // of the batch that grows
    std::vector<array_t*> m_keys;           // by key; null where not wanted
    std::vector<array_t*> m_values;         // by position of the value; null where not wanted
    std::vector<array_t*> m_variable;       // those whose rows have no fixed size
    std::size_t m_rows = 0;
    std::size_t m_room = 0; // rows
    batchPlace_t m_place;   // of these rows
    std::vector<std::shared_ptr<const batch_t>> m_batches;
    std::size_t m_batchBytes = 0;
};
