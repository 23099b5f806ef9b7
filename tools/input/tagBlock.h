// Tag blocks in front of a sentence, as "\s:rEV02,c:1334337320*5C\": data that a station adds to a
// sentence that it passes on.
#pragma once

#include <cstddef>
#include <string_view>

struct tagBlock_t {
    enum checksum_t { none, matching, different };

    std::string_view items; ///< "key:value", with commas between
    checksum_t checksum = none;
    unsigned stated = 0;
    unsigned computed = 0;
};

/// Where the blocks that end directly in front of `at` begin, but not before `from`; `at` if there
/// are none.
std::size_t tagBlocksBegin(std::string_view text, std::size_t from, std::size_t at);

/// Cuts the first block off the front of `blocks`; false if none is left.
bool takeTagBlock(std::string_view& blocks, tagBlock_t& out);

/// Cuts the first item off the front of the items of a block; false when there is none left.
bool takeTagItem(std::string_view& items, std::string_view& key, std::string_view& value);

/// The value of a key in the blocks in front of one sentence: the last one if there are several,
/// empty if there is none. With `onlyRight`, blocks with a wrong checksum do not count.
std::string_view tagValue(std::string_view blocks, std::string_view key, bool onlyRight);
