// A log becomes records and output. The records add up to the log, all output is valid, and cutting
// reads anywhere changes nothing.
#include <map>
#include <memory>

#include "fuzz/logText.h"
#include "tools/output/jsonWriter.h"
#include "tools/output/tableWriter.h"
#include "tools/record/registry.h"

namespace {

using fuzz::require;

// The built-in dictionary is read only once.
readOptions_t optionsOf(std::minstd_rand& random) {
    static const auto dictionary = std::make_shared<dictionaryHolder_t>();
    readOptions_t options;
    options.dictionary = dictionary;
    constexpr kind_t kinds[] = {kind_t::sentence, kind_t::motion, kind_t::tracking, kind_t::table};
    options.split.strict = random() % 8 == 0;
    options.split.requireChecksum = random() % 8 == 0;
    options.split.only = random() % 8 == 0 ? kinds[random() % 4] : kind_t::none;
    options.dateOrder = random() % 2 == 0 ? dateOrder_t::unknown : dateOrder_t::dayFirst;
    if (random() % 2 == 0) {
        options.dating.date = {2026, 3, 14};
    }
    if (random() % 4 == 0) {
        options.dating.notBefore = {2019, 4, 7};
    }
    return options;
}

// Every record is where it says, and what lies between records is blank.
class tiling_t {
public:
    explicit tiling_t(std::string_view input) : m_input(input) {}

    void add(const record_t& record) {
        if (record.raw.empty()) { // a group of satellites
            return;
        }
        addBlank(record.offset);
        require(m_input.substr(record.offset, record.raw.size()) == record.raw,
                "a record is where it says");
        m_end = record.offset + record.raw.size();
    }
    void addBlank(std::uint64_t to) {
        require(to >= m_end && m_input.substr(m_end, to - m_end).find_first_not_of(" \t\r\n") ==
                                   std::string_view::npos,
                "nothing but line ends lies between records");
    }

private:
    std::string_view m_input;
    std::uint64_t m_end = 0;
};

// A table has as many cells in each line as in its first.
void requireTable(std::string_view text, tableFormat_t format, std::size_t columns) {
    std::size_t cells = 1;
    bool isQuoted = false;
    for (const char c : text) {
        isQuoted = isQuoted != (c == '"' && format == tableFormat_t::csv);
        if (!isQuoted && c == separatorOf(format)) {
            ++cells;
        }
        if (!isQuoted && c == '\n') {
            require(cells == columns, "a cell for each column");
            cells = 1;
        }
    }
    require(!isQuoted && cells == 1, "whole lines, and quotes that close");
}

std::string tableOf(const record_t& record) {
    const std::string_view name = typeNameOf(record);
    return std::string(!name.empty()                   ? name
                       : record.fault != fault_t::none ? malformedTable
                                                       : untypedTable);
}

void checkTables(std::string_view input, const readOptions_t& read, const tableOptions_t& options) {
    struct table_t {
        std::unique_ptr<tableWriter_t> writer;
        buffer_t text;
        std::size_t columns = 0;
    };
    std::map<std::string, table_t> tables;
    scratch_t scratch;
    fuzz::readRecords({input}, read, [&](const record_t& record) {
        table_t& table = tables[tableOf(record)];
        if (table.writer == nullptr) {
            recordTable_t records = tableNamed(tableOf(record), *read.dictionary);
            table.columns = tableColumns(records, options.values).size();
            table.writer = std::make_unique<tableWriter_t>(std::move(records), options);
            table.writer->writeHead(table.text);
        }
        const std::size_t begin = table.text.size();
        table.writer->write(record, "a log, \"quoted\"", scratch, table.text);
        require(table.text.size() > begin, "a row for each record");
    });
    for (const auto& [name, table] : tables) {
        requireTable(table.text.text(), options.format, table.columns);
    }
}

} // namespace

void fuzz::pipeline(std::string_view input) {
    std::minstd_rand random = randomOf(input);
    const readOptions_t read = optionsOf(random);
    valueOptions_t values;
    values.radians = random() % 4 == 0;
    values.raw = random() % 4 == 0;
    values.epoch = random() % 4 == 0;
    values.explain = random() % 4 == 0;

    buffer_t whole;
    buffer_t cut;
    const auto print = [&](const std::vector<std::string_view>& pieces, buffer_t& out) {
        jsonWriter_t json(out, values);
        json.setSource("a log, \"quoted\"");
        scratch_t scratch;
        tiling_t tiling(input);
        readRecords(pieces, read, [&](const record_t& record) {
            tiling.add(record);
            json.write(record, scratch);
        });
        tiling.addBlank(input.size());
    };
    print({input}, whole);
    print(piecesOf(input), cut);
    require(whole.text() == cut.text(), "cuts change nothing");
    requireJsonLines(whole.text());
    const auto format = random() % 2 == 0 ? tableFormat_t::csv : tableFormat_t::tsv;
    checkTables(input, read, {format, random() % 2 == 0, {}, values});
}
