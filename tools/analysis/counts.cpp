#include "tools/analysis/counts.h"

#include <numeric>

#include <fmt/format.h>

#include "tools/record/registry.h"

namespace {

// The parts of a list, without those that are zero.
class partList_t {
public:
    explicit partList_t(const char* start, const char* separator)
        : m_start(start), m_separator(separator) {}

    void add(std::uint64_t count, std::string_view name) {
        if (count > 0) {
            append(fmt::format("{} {}", count, name));
        }
    }
    void append(const std::string& part) {
        if (!part.empty()) {
            m_text += (m_text.empty() ? m_start : m_separator) + part;
        }
    }
    const std::string& text() const { return m_text; }

private:
    const char* m_start;
    const char* m_separator;
    std::string m_text;
};

std::string counted(std::uint64_t count, const char* one, const char* many) {
    return count == 0 ? "" : fmt::format("{} {}", count, count == 1 ? one : many);
}

} // namespace

void counts_t::add(const record_t& record) {
    if (record.type == typeOf<satellitesRecord_t>) {
        return; // its sentences count, and its group
    }
    if (record.fault != fault_t::none) {
        ++m_malformed[static_cast<std::size_t>(record.fault)];
    } else if (hasNamedValues(record)) {
        ++m_decoded;
    } else {
        ++m_untyped;
    }
}

void counts_t::add(const recordReader_t& reader) {
    m_blankLines += reader.blankLines();
    m_complete += reader.groups().complete();
    m_partial += reader.groups().partial();
    m_incomplete += reader.groups().incomplete();
    m_undated += reader.dating().undated();
    m_farFromStamp += reader.dating().farFromStamp();
    m_rolledOver += reader.dating().rolledOver();
}

void counts_t::add(const counts_t& other) {
    for (std::uint64_t counts_t::*count :
         {&counts_t::m_decoded, &counts_t::m_untyped, &counts_t::m_blankLines,
          &counts_t::m_complete, &counts_t::m_partial, &counts_t::m_incomplete,
          &counts_t::m_undated, &counts_t::m_farFromStamp, &counts_t::m_rolledOver}) {
        this->*count += other.*count;
    }
    for (std::size_t i = 0; i < faultCount; ++i) {
        m_malformed[i] += other.m_malformed[i];
    }
}

std::uint64_t counts_t::records() const {
    return std::accumulate(m_malformed.begin(), m_malformed.end(), m_decoded + m_untyped);
}

std::string counts_t::text() const {
    const std::uint64_t malformed = records() - m_decoded - m_untyped;
    partList_t reasons(" (", ", ");
    for (std::size_t i = 0; i < m_malformed.size(); ++i) {
        reasons.add(m_malformed[i], faultText(static_cast<fault_t>(i)));
    }
    partList_t kinds(": ", ", ");
    kinds.add(m_decoded, "decoded");
    kinds.add(m_untyped, "untyped");
    if (malformed > 0) {
        kinds.append(fmt::format("{} malformed{})", malformed, reasons.text()));
    }
    partList_t groups("satellite groups: ", ", ");
    groups.add(m_complete, "complete");
    groups.add(m_partial, "partial");
    groups.add(m_incomplete, "incomplete");
    partList_t all("", "; ");
    all.append((records() == 0 ? "0 records" : counted(records(), "record", "records")) +
               kinds.text());
    all.append(counted(m_blankLines, "blank line", "blank lines"));
    all.append(groups.text());
    if (m_farFromStamp > 0) {
        partList_t reason(" (", ", ");
        reason.add(m_rolledOver, "by 1024 weeks");
        all.append(counted(m_farFromStamp, "record has", "records have") +
                   " a date more than a day from the stamp" + reason.text() +
                   (m_rolledOver > 0 ? ")" : ""));
    }
    if (m_undated > 0) {
        all.append(counted(m_undated, "record has", "records have") +
                   " a time but no date; give --date YYYY-MM-DD");
    }
    return all.text();
}
