// Who sends what: the records of one kind that come from one input, under one prefix, of one
// talker.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "tools/record/record.h"

struct senderName_t {
    std::string source;
    std::string prefix;
    std::string talker;
    std::string type; ///< the address, if a sentence has no named values
};

class senders_t {
public:
    /// Memory stays bounded: all senders beyond the limits count as one sender without a name.
    static constexpr std::size_t most = 4096;
    static constexpr std::size_t mostNameBytes = std::size_t{4} << 20; // of all names together

    void beginInput(const std::string& name) { m_source = name; }
    /// The number of a record's sender; they are counted from 0 in the order in which they come.
    std::size_t of(const record_t& record);

    /// Whether this is the sender without a name.
    bool isOthers(std::size_t number) const { return number == m_others; }
    std::size_t count() const { return m_names.size(); }
    const senderName_t& operator[](std::size_t number) const { return m_names[number]; }

private:
    std::size_t find(const record_t& record, std::string_view kind);

    std::size_t m_others = static_cast<std::size_t>(-1);
    std::size_t m_nameBytes = 0;
    std::string m_source;
    std::string m_key;
    std::vector<senderName_t> m_names;
    std::unordered_map<std::string, std::size_t> m_places;
    std::array<std::size_t, 256>
        m_recent{}; // sender numbers, found by a hash of a few letters of the names
};
