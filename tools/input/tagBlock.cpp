#include "tools/input/tagBlock.h"

#include <algorithm>

#include "tools/input/text.h"

namespace {

constexpr char mark = '\\';

// "*hh" at the end of a block; its place is the size of `content` without one.
std::size_t checksumBegin(std::string_view content) {
    constexpr std::size_t length = 3;
    const std::size_t star = content.size() - std::min(content.size(), length);
    return content.size() >= length && content[star] == '*' && hexDigit(content[star + 1]) < 16 &&
                   hexDigit(content[star + 2]) < 16
               ? star
               : content.size();
}

bool isKey(std::string_view text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return isLetter(c) || isDigit(c); });
}

// Whether what stands between two marks reads as a block.
bool isBlock(std::string_view content) {
    std::string_view items = content.substr(0, checksumBegin(content));
    if (items.empty()) {
        return false;
    }
    while (!items.empty()) {
        const std::string_view item = items.substr(0, items.find(','));
        if (!isKey(item.substr(0, item.find(':'))) || item.find(':') == std::string_view::npos) {
            return false;
        }
        items.remove_prefix(std::min(item.size() + 1, items.size()));
    }
    return true;
}

} // namespace

std::size_t tagBlocksBegin(std::string_view text, std::size_t from, std::size_t at) {
    while (at >= from + 2 && text[at - 1] == mark) {
        const std::size_t begin = text.rfind(mark, at - 2);
        if (begin == std::string_view::npos || begin < from ||
            !isBlock(text.substr(begin + 1, at - begin - 2))) {
            break;
        }
        at = begin;
    }
    return at;
}

bool takeTagBlock(std::string_view& blocks, tagBlock_t& out) {
    const std::size_t end = blocks.find(mark, 1);
    if (end == std::string_view::npos) {
        return false;
    }
    const std::string_view content = blocks.substr(1, end - 1);
    const std::size_t star = checksumBegin(content);
    out = {};
    out.items = content.substr(0, star);
    if (star < content.size()) {
        out.stated = hexDigit(content[star + 1]) * 16 + hexDigit(content[star + 2]);
        out.computed = exclusiveOr(out.items);
        out.checksum = out.stated == out.computed ? tagBlock_t::matching : tagBlock_t::different;
    }
    blocks.remove_prefix(end + 1);
    return true;
}

bool takeTagItem(std::string_view& items, std::string_view& key, std::string_view& value) {
    if (items.empty()) {
        return false;
    }
    const std::string_view item = items.substr(0, items.find(','));
    const std::size_t colon = item.find(':');
    key = item.substr(0, colon);
    value = item.substr(colon + 1);
    items.remove_prefix(std::min(item.size() + 1, items.size()));
    return true;
}

std::string_view tagValue(std::string_view blocks, std::string_view key, bool onlyRight) {
    std::string_view found;
    tagBlock_t block;
    while (takeTagBlock(blocks, block)) {
        std::string_view itemKey;
        std::string_view value;
        while (takeTagItem(block.items, itemKey, value)) {
            if (itemKey == key && !(onlyRight && block.checksum == tagBlock_t::different)) {
                found = value;
            }
        }
    }
    return found;
}
