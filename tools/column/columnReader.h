// Turns the bytes of inputs into columns.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/column/columnTable.h"
#include "tools/record/byTable.h"
#include "tools/record/recordReader.h"

/// What is read, and how it becomes columns.
struct columnReaderOptions_t {
    readOptions_t read;
    columnOptions_t columns;
    std::vector<std::string> tables; ///< only these; none: all
};

/// The names of the tables of records without a type.
constexpr std::string_view unknownColumns = "unknown";
constexpr std::string_view malformedColumns = "malformed";

/// The rows of one table.
struct namedBatches_t {
    std::string name;
    std::shared_ptr<const columnTypes_t> types;
    std::vector<std::shared_ptr<const batch_t>> batches; ///< none: no rows
};

/// How to use it: for each input call `begin`, then `feed` with its bytes as they come, then `end`.
/// `take` may be called at any time.
class columnReader_t {
public:
    explicit columnReader_t(columnReaderOptions_t options);

    /// The input that follows. An input that was begun is left as it is, without its last line.
    void begin(std::string_view source);
    /// A range of an input, with the state in which its first line is read (`stateAt`).
    void begin(std::string_view source, const readerState_t& state);
    /// More bytes of the input.
    void feed(std::string_view bytes);
    /// The input has no more bytes.
    void end();
    /// The range has no more bytes, and the next line of the input begins there.
    void endRange();

    /// The rows since the last call, in the order of the names of the tables. A table that
    /// `options.tables` names is there even if it has no rows.
    std::vector<namedBatches_t> take();

    /// How much memory those rows take.
    std::size_t bytes() const;

    /// The name that a table has as columns, for its name or that of a type in letters of any case;
    /// empty if there is no such table.
    static std::string nameOf(std::string_view name, dictionaryHolder_t& dictionary);
    /// The names of all tables.
    static std::vector<std::string> names(dictionaryHolder_t& dictionary);
    /// The columns of a table, by its name as columns.
    static recordTable_t tableOf(std::string_view name, dictionaryHolder_t& dictionary);

private:
    struct table_t {
        bool isWanted;
        std::string name;
        columnTable_t columns;
    };

    std::unique_ptr<table_t> makeTable(std::string_view name);
    void takeRecords();

    columnReaderOptions_t m_options;
    std::optional<recordReader_t> m_reader;
    std::string m_source;
    byTable_t<table_t> m_tables;
    record_t m_record;
    scratch_t m_scratch;
};
