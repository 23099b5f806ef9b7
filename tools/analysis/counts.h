// The counts of a run, and the summary line that they make at its end.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "tools/record/recordReader.h"

class counts_t {
public:
    void add(const record_t& record);
    /// The counts of another part of the run.
    void add(const counts_t& other);
    /// What a reader has counted in its input, once it has finished.
    void add(const recordReader_t& reader);

    std::uint64_t records() const;
    std::uint64_t decoded() const { return m_decoded; }
    std::uint64_t untyped() const { return m_untyped; }
    std::uint64_t malformed(fault_t fault) const {
        return m_malformed[static_cast<std::size_t>(fault)];
    }
    std::uint64_t blankLines() const { return m_blankLines; }
    std::uint64_t completeGroups() const { return m_complete; }
    std::uint64_t partialGroups() const { return m_partial; }
    std::uint64_t incompleteGroups() const { return m_incomplete; }
    std::uint64_t undated() const { return m_undated; }

    /// "12 records: 9 decoded, 1 untyped, 2 malformed (2 cut); 4 blank lines"; zero counts are left
    /// out.
    std::string text() const;

private:
    std::uint64_t m_decoded = 0;
    std::uint64_t m_untyped = 0;
    std::array<std::uint64_t, faultCount> m_malformed{};
    std::uint64_t m_blankLines = 0;
    std::uint64_t m_complete = 0;
    std::uint64_t m_partial = 0;
    std::uint64_t m_incomplete = 0;
    std::uint64_t m_undated = 0;
    std::uint64_t m_farFromStamp = 0;
    std::uint64_t m_rolledOver = 0;
};
