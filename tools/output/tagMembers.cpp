#include "tools/output/tagMembers.h"

#include <algorithm>
#include <string>

#include "tools/input/tagBlock.h"
#include "tools/output/jsonString.h"
#include "tools/output/valueText.h"

namespace {

// "0", or digits of which the first is not 0, with or without a minus.
bool isCanonicalInteger(std::string_view text) {
    const bool isNegative = !text.empty() && text[0] == '-';
    const std::string_view digits = text.substr(isNegative ? 1 : 0);
    return !digits.empty() && (digits[0] != '0' || text == "0") &&
           std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; });
}

void writeByte(buffer_t& out, std::string_view key, unsigned byte) {
    out.append(key);
    writeHexByte(out, byte);
    out.append('"');
}

} // namespace

void tagMembers_t::write(buffer_t& out, std::string_view blocks) {
    m_members.clear();
    m_places.clear();
    tagBlock_t block;
    bool lacksChecksum = false;
    tagBlock_t wrong; // the last block with a wrong checksum
    while (takeTagBlock(blocks, block)) {
        lacksChecksum = lacksChecksum || block.checksum == tagBlock_t::none;
        wrong = block.checksum == tagBlock_t::different ? block : wrong;
        member_t member;
        while (takeTagItem(block.items, member.key, member.value)) {
            const auto [place, isNew] = m_places.emplace(member.key, m_members.size());
            if (isNew) {
                m_members.push_back(member);
            } else {
                m_members[place->second].value = member.value;
            }
        }
    }
    char separator = '{';
    for (const member_t& member : m_members) {
        out.append(separator);
        writeJsonString(out, member.key);
        out.append(':');
        if (isCanonicalInteger(member.value)) {
            out.append(member.value);
        } else {
            writeJsonString(out, member.value);
        }
        separator = ',';
    }
    if (lacksChecksum) {
        out.append(separator);
        out.append("\"checksum\":false");
        separator = ',';
    }
    if (wrong.checksum == tagBlock_t::different) {
        out.append(separator);
        writeByte(out, "\"stated\":\"", wrong.stated);
        writeByte(out, ",\"computed\":\"", wrong.computed);
    }
    out.append('}');
}
