#include "tools/output/tableWriter.h"

#include <algorithm>
#include <numeric>

#include "tools/record/recordValues.h"
#include "tools/record/satelliteMembers.h"

namespace {

constexpr std::size_t noColumn = static_cast<std::size_t>(-1);

// What is longer stands in the first line of a record only, so that the output stays in proportion
// to the input.
constexpr std::size_t longestRepeated = 256;

// The positions of the columns with these names, in the order of the names; without names, all.
std::vector<std::size_t> chosenOf(const std::vector<tableColumn_t>& columns,
                                  const std::vector<std::string>& names) {
    std::vector<std::size_t> chosen(names.empty() ? columns.size() : 0);
    std::iota(chosen.begin(), chosen.end(), std::size_t{0});
    for (const std::string& name : names) {
        const auto found =
            std::find_if(columns.begin(), columns.end(),
                         [&](const tableColumn_t& column) { return column.name == name; });
        if (found != columns.end()) {
            chosen.push_back(static_cast<std::size_t>(found - columns.begin()));
        }
    }
    return chosen;
}

} // namespace

std::vector<tableColumn_t> tableColumns(const recordTable_t& records,
                                        const valueOptions_t& values) {
    std::vector<tableColumn_t> columns;
    for (const recordColumn_t& column : records.columns) {
        // All records of a table are of one type.
        if (column.key == recordKey_t::type ||
            (column.key == recordKey_t::timeRule && !values.explain)) {
            continue;
        }
        for (const recordColumn_t& member : column.members) {
            columns.push_back({column.name + '.' + member.name, &member, true});
        }
        if (column.members.empty()) {
            columns.push_back({column.name, &column});
        }
    }
    return columns;
}

std::vector<tableColumn_t> chosenColumns(const recordTable_t& records,
                                         const tableOptions_t& options) {
    std::vector<tableColumn_t> columns = tableColumns(records, options.values);
    std::vector<tableColumn_t> chosen;
    for (const std::size_t i : chosenOf(columns, options.columns)) {
        chosen.push_back(std::move(columns[i]));
    }
    return chosen;
}

std::string unitOf(const recordColumn_t& column, const valueOptions_t& values) {
    if (column.shape == shape_t::instant) {
        return values.epoch ? "s" : "";
    }
    return values.radians ? column.radianUnit : column.unit;
}

// Takes the values of a record and makes cells of them.
class tableWriter_t::sink_t {
public:
    /// `entry` describes the record, if the dictionary does.
    sink_t(tableWriter_t& writer, const dictionarySentence_t* entry)
        : m_writer(writer), m_entry(entry) {}

    template <typename Column, typename T>
    void value(Column /*column*/, const T& value) {
        constexpr bool isAngle = Column::row.unit.radianName != nullptr;
        const std::size_t column = m_writer.m_valueColumns[Column::position];
        if constexpr (std::is_same_v<T, satelliteList_t>) {
            std::size_t line = 0;
            for (const satellite_t& satellite : value) {
                setSatellite(column, line++, satellite);
            }
        } else if (cell_t* const cell = cellOf(column)) {
            set(*cell, value, isAngle);
        }
    }
    template <typename Column>
    void none(Column /*column*/) {}

    template <typename T>
    void value(dictionaryColumn_t column, const T& value) {
        if (cell_t* const cell = cellOf(columnOf(column.row))) {
            set(*cell, value, column.row.isAngle());
        }
    }
    bool value(dictionaryColumn_t column, const memberGroup_t& group) {
        bool isLost = false;
        m_group = &column.row;
        m_groupColumn = m_writer.m_valueColumns[positionOf(column.row)];
        for (unsigned i = 0; i < group.count(); ++i) {
            m_line = i;
            startLine(i);
            isLost = group.read(i, *this) || isLost;
        }
        m_group = nullptr;
        return isLost;
    }

private:
    std::size_t positionOf(const dictionaryRow_t& row) const {
        return static_cast<std::size_t>(&row - m_entry->rows.data());
    }
    std::size_t columnOf(const dictionaryRow_t& row) const {
        return m_group == nullptr
                   ? m_writer.m_valueColumns[positionOf(row)]
                   : m_groupColumn + static_cast<std::size_t>(&row - m_group->members.data());
    }

    void startLine(std::size_t line) {
        m_writer.m_lines = std::max(m_writer.m_lines, line + 1);
        m_writer.m_memberCells.resize(m_writer.m_lines * m_writer.m_memberCount);
    }

    // Null where the column is not printed.
    cell_t* cellOf(std::size_t column) {
        const place_t& place = m_writer.m_places[column];
        if (!place.isChosen) {
            return nullptr;
        }
        return place.isMember
                   ? &m_writer.m_memberCells[m_line * m_writer.m_memberCount + place.cell]
                   : &m_writer.m_cells[place.cell];
    }

    void setSatellite(std::size_t first, std::size_t line, const satellite_t& satellite) {
        m_line = line;
        startLine(line);
        forEachSatelliteColumn([&](auto column) {
            using column_t = decltype(column);
            cell_t* const cell = cellOf(first + column_t::position);
            if (cell != nullptr && column_t::row.isIn(satellite)) {
                set(*cell, column_t::row.valueOf(satellite),
                    column_t::row.unit.radianName != nullptr);
            }
        });
    }

    template <typename T>
    void set(cell_t& cell, const T& value, bool isAngle) {
        m_writer.set(cell, [&] { write(value, isAngle); });
    }

    template <typename T>
    void write(const T& value, [[maybe_unused]] bool isAngle) {
        buffer_t& out = m_writer.m_text;
        if constexpr (std::is_floating_point_v<T>) {
            char* const at = out.room(longestPlain);
            out.setEnd(isAngle ? writeAngle(at, value, m_writer.m_options.values.radians)
                               : writePlain(at, value));
        } else if constexpr (isPlainType<T> || std::is_same_v<T, kalo::date_t>) {
            out.setEnd(writePlain(out.room(longestPlain), value));
        } else if constexpr (std::is_same_v<T, sentTime_t>) {
            writeTime(out, value);
        } else if constexpr (std::is_same_v<T, std::vector<unsigned>>) {
            const char* separator = "";
            for (const unsigned number : value) {
                out.append(separator);
                out.setEnd(writePlain(out.room(longestPlain), number));
                separator = " ";
            }
        } else if constexpr (std::is_same_v<T, fieldTexts_t>) {
            writeCell(out, restOfText(value.sentence, value.first), m_writer.m_options.format);
        } else if constexpr (std::is_same_v<T, char>) {
            writeCell(out, {&value, 1}, m_writer.m_options.format);
        } else {
            writeCell(out, value, m_writer.m_options.format);
        }
    }

    tableWriter_t& m_writer;
    const dictionarySentence_t* m_entry;
    const dictionaryRow_t* m_group = nullptr; // whose members are read
    std::size_t m_groupColumn = 0;
    std::size_t m_line = 0;
};

tableWriter_t::tableWriter_t(recordTable_t records, const tableOptions_t& options)
    : m_records(std::move(records)), m_options(options),
      m_columns(tableColumns(m_records, m_options.values)), m_places(m_columns.size()),
      m_keyColumns(recordKeyCount, noColumn) {
    m_chosen = chosenOf(m_columns, m_options.columns);
    std::size_t cells = 0;
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        const recordColumn_t& column = *m_columns[i].column;
        m_places[i].isMember = m_columns[i].isMember;
        m_places[i].cell = m_columns[i].isMember ? m_memberCount++ : cells++;
        if (column.key != recordKey_t::value) {
            m_keyColumns[static_cast<std::size_t>(column.key)] = i;
        }
    }
    for (const std::size_t i : m_chosen) {
        m_places[i].isChosen = true;
    }
    for (const recordColumn_t& column : m_records.columns) {
        if (column.key == recordKey_t::value) {
            const recordColumn_t& first = column.members.empty() ? column : column.members[0];
            const auto found =
                std::find_if(m_columns.begin(), m_columns.end(),
                             [&](const tableColumn_t& one) { return one.column == &first; });
            m_valueColumns.push_back(static_cast<std::size_t>(found - m_columns.begin()));
        }
    }
    m_cells.resize(cells);
}

void tableWriter_t::writeHead(buffer_t& out) const {
    writeLine(out, [&](std::size_t column) { return std::string_view(m_columns[column].name); });
    if (m_options.hasUnits) {
        std::string unit;
        writeLine(out, [&](std::size_t column) {
            unit = unitOf(*m_columns[column].column, m_options.values);
            return std::string_view(unit);
        });
    }
}

void tableWriter_t::write(const record_t& record, std::string_view source, scratch_t& scratch,
                          buffer_t& out) {
    m_text.clear();
    std::fill(m_cells.begin(), m_cells.end(), cell_t());
    m_memberCells.clear();
    m_lines = 0;
    setBegin(record, source);
    const bool isLost = readRecord(record, scratch, sink_t(*this, record.entry));
    if (const auto* sentence = std::get_if<const kalo::nmeaFormat_t*>(&record.content)) {
        setKeyText(recordKey_t::checksum, record.hasChecksum ? "" : "false");
        if (!hasNamedValues(record)) {
            setKeyText(recordKey_t::address, (*sentence)->field(0)->toString());
            setKeyText(recordKey_t::fields, restOfText(**sentence, 1));
        }
    }
    if (record.fault != fault_t::none) {
        setFault(record);
    }
    setKeyText(recordKey_t::suffix, record.suffix);
    if (isLost || m_options.values.raw || record.fault != fault_t::none) {
        setKeyText(recordKey_t::raw, record.raw);
    }
    for (std::size_t line = 0; line < std::max<std::size_t>(m_lines, 1); ++line) {
        writeLine(out, [&](std::size_t column) { return textOf(m_places[column], line); });
    }
}

// What stands in front of the values.
void tableWriter_t::setBegin(const record_t& record, std::string_view source) {
    setKeyText(recordKey_t::source, source);
    const auto setNumber = [&](recordKey_t key, std::uint64_t number) {
        setKey(key, [&] { m_text.setEnd(writePlain(m_text.room(longestPlain), number)); });
    };
    if (record.line > 0) {
        setNumber(recordKey_t::line, record.line);
    }
    setNumber(recordKey_t::offset, record.offset);
    setKeyText(recordKey_t::received, record.received);
    if (!record.tags.empty()) {
        setKey(recordKey_t::tag, [&] {
            m_object.clear();
            m_tags.write(m_object, record.tags);
            writeJsonCell(m_text, m_object.text(), m_options.format);
        });
    }
    setKeyText(recordKey_t::prefix, record.prefix);
    setKeyText(recordKey_t::talker, record.talker);
    if (record.instant) {
        setInstant(*record.instant);
    }
}

void tableWriter_t::setInstant(const instant_t& instant) {
    setKey(recordKey_t::time, [&] {
        if (m_options.values.epoch) {
            m_text.setEnd(writePlain(m_text.room(longestPlain), instant.timestamp));
        } else {
            writeInstant(m_text, instant, "", "Z");
        }
    });
    setKeyText(recordKey_t::timeRule, dayRuleText(instant.rule));
}

void tableWriter_t::setFault(const record_t& record) {
    setKeyText(recordKey_t::error, faultText(record.fault));
    if (record.fault == fault_t::checksumMismatch) {
        setKey(recordKey_t::stated, [&] { writeHexByte(m_text, record.stated); });
        setKey(recordKey_t::computed, [&] { writeHexByte(m_text, record.computed); });
    }
}

std::string_view tableWriter_t::textOf(const place_t& place, std::size_t line) const {
    if (place.isMember) {
        return line < m_lines ? textOf(m_memberCells[line * m_memberCount + place.cell])
                              : std::string_view();
    }
    const cell_t& cell = m_cells[place.cell];
    return line > 0 && cell.size() > longestRepeated ? std::string_view() : textOf(cell);
}

template <typename TextOf>
void tableWriter_t::writeLine(buffer_t& out, TextOf textOf) const {
    const std::size_t begin = out.size();
    for (const std::size_t column : m_chosen) {
        if (column != m_chosen[0]) {
            out.append(separatorOf(m_options.format));
        }
        out.append(textOf(column));
    }
    if (out.size() == begin && m_options.format == tableFormat_t::csv) {
        out.append("\"\""); // readers skip an empty line
    }
    out.append(lineEndOf(m_options.format));
}
