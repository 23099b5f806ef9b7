#include "tools/column/columnReader.h"

#include <algorithm>

namespace {

// What the tables of records without a type are called as columns, and in the record table.
struct ownName_t {
    std::string_view columns;
    std::string_view table;
};
constexpr ownName_t ownNames[] = {{unknownColumns, untypedTable},
                                  {malformedColumns, malformedTable}};

std::string_view columnsName(std::string_view table) {
    for (const ownName_t& own : ownNames) {
        if (own.table == table) {
            return own.columns;
        }
    }
    return table;
}

std::string_view tableName(std::string_view columns) {
    for (const ownName_t& own : ownNames) {
        if (own.columns == columns) {
            return own.table;
        }
    }
    return columns;
}

} // namespace

columnReader_t::columnReader_t(columnReaderOptions_t options) : m_options(std::move(options)) {
    for (const std::string& name : m_options.tables) {
        const std::string_view table = tableName(name);
        m_tables.named(table, [this](std::string_view own) { return makeTable(own); });
    }
}

std::unique_ptr<columnReader_t::table_t> columnReader_t::makeTable(std::string_view name) {
    const std::vector<std::string>& wanted = m_options.tables;
    const std::string_view columns = columnsName(name);
    std::unique_ptr<table_t> table(new table_t{
        wanted.empty() || std::find(wanted.begin(), wanted.end(), columns) != wanted.end(),
        std::string(columns),
        {tableNamed(name, *m_options.read.dictionary), m_options.columns}});
    table->isWanted = table->isWanted && !table->columns.types()->empty();
    return table;
}

void columnReader_t::begin(std::string_view source) {
    m_source = source;
    m_reader.emplace(m_options.read);
}

void columnReader_t::begin(std::string_view source, const readerState_t& state) {
    begin(source);
    m_reader->startFrom(state);
}

void columnReader_t::feed(std::string_view bytes) {
    m_reader->feed(bytes);
    takeRecords();
}

void columnReader_t::end() {
    m_reader->finish();
    takeRecords();
    m_reader.reset();
}

void columnReader_t::endRange() {
    m_reader->pause();
    takeRecords();
    m_reader.reset();
}

void columnReader_t::takeRecords() {
    while (m_reader->next(m_record)) {
        table_t& table =
            m_tables.of(m_record, [this](std::string_view name) { return makeTable(name); });
        if (table.isWanted) {
            table.columns.add(m_record, m_source, m_scratch);
        }
    }
}

std::vector<namedBatches_t> columnReader_t::take() {
    std::vector<namedBatches_t> taken;
    for (const auto& [key, table] : m_tables.objects()) {
        if (!table->isWanted) {
            continue;
        }
        namedBatches_t rows = {table->name, table->columns.types(), table->columns.take()};
        if (!rows.batches.empty() || !m_options.tables.empty()) {
            taken.push_back(std::move(rows));
        }
    }
    return taken;
}

std::size_t columnReader_t::bytes() const {
    std::size_t size = 0;
    for (const auto& [key, table] : m_tables.objects()) {
        size += table->columns.bytes();
    }
    return size;
}

std::string columnReader_t::nameOf(std::string_view name, dictionaryHolder_t& dictionary) {
    for (const ownName_t& own : ownNames) {
        if (own.columns == name) {
            return std::string(name);
        }
    }
    if (const typeIndex_t type = typeOfName(name); type != noType) {
        return std::string(recordTypes[type].name);
    }
    const dictionarySentence_t* const entry = dictionary.get().named(name);
    return entry != nullptr ? entry->name : std::string();
}

std::vector<std::string> columnReader_t::names(dictionaryHolder_t& dictionary) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < recordTypeCount; ++i) {
        names.emplace_back(recordTypes[i].name);
    }
    for (const dictionarySentence_t& entry : dictionary.get().sentences()) {
        if (typeOfName(entry.name) == noType) {
            names.push_back(entry.name);
        }
    }
    for (const ownName_t& own : ownNames) {
        names.emplace_back(own.columns);
    }
    return names;
}

recordTable_t columnReader_t::tableOf(std::string_view name, dictionaryHolder_t& dictionary) {
    return tableNamed(tableName(name), dictionary);
}
