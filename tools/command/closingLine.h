// The counts of a run, and the line that they make at its end.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "tools/record/recordReader.h"

class counts_t {
public:
    void add(const record_t& record);
    /// What a reader has counted of its input, when it is finished.
    void add(const recordReader_t& reader);

    /// "12 records: 9 decoded, 1 untyped, 2 malformed (2 cut); 4 blank lines"; what is zero is left
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
