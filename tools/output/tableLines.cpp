#include "tools/output/tableLines.h"

linesOfTable_t& tableLines_t::write(const record_t& record, scratch_t& scratch) {
    linesOfTable_t& table =
        m_tables.of(record, [this](std::string_view name) { return make(name); });
    if (table.writer.hasColumns()) {
        table.writer.write(record, m_source, scratch, table.lines);
    }
    return table;
}

void tableLines_t::clear() {
    for (const auto& [name, table] : m_tables.objects()) {
        table->lines.clear();
    }
}

linesOfTable_t& tableLines_t::named(std::string_view name) {
    return m_tables.named(name, [this](std::string_view own) { return make(own); });
}

std::unique_ptr<linesOfTable_t> tableLines_t::make(std::string_view name) const {
    return std::unique_ptr<linesOfTable_t>(
        new linesOfTable_t{std::string(name), {tableNamed(name, m_dictionary), m_options}, {}});
}
