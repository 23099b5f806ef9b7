// The tag blocks in front of a sentence as a JSON object.
#pragma once

#include <string_view>
#include <unordered_map>
#include <vector>

#include "tools/output/buffer.h"

/// Reuses its memory from one sentence to the next.
class tagMembers_t {
public:
    /// Appends the items of all blocks as one object: of a key that occurs twice the later value.
    /// Integers that are written as JSON writes them stay integers. Behind the items: that a block
    /// has no checksum, and the checksums, stated and computed, of the last block with a wrong one.
    void write(buffer_t& out, std::string_view blocks);

private:
    struct member_t {
        std::string_view key;
        std::string_view value;
    };

    std::vector<member_t> m_members;
    std::unordered_map<std::string_view, std::size_t> m_places; // of the keys
};
