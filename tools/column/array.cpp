#include "tools/column/array.h"

#include <algorithm>
#include <bitset>

#include "tools/output/utf8.h"

namespace {

constexpr std::size_t leastRows = 64;
// What one row adds is far less than the other half of the 31 bits.
constexpr std::size_t largeSize = std::size_t{1} << 30;
constexpr std::size_t longestEscape = 4;

std::size_t bitBytes(std::size_t rows) { return (rows + 7) / 8; }

bool isPlain(char c) { return static_cast<unsigned char>(c) < 0x80 && c != '\\'; }

// Valid UTF-8 stays, a backslash is doubled, any other byte becomes \xHH.
char* writeEscaped(char* at, std::string_view bytes) {
    constexpr const char* digits = "0123456789ABCDEF";
    for (std::size_t i = 0; i < bytes.size();) {
        const std::size_t length = isPlain(bytes[i]) ? 1 : utf8Length(bytes.substr(i));
        if (length > 0) {
            at = std::copy_n(bytes.data() + i, length, at);
            i += length;
            continue;
        }
        const auto c = static_cast<unsigned char>(bytes[i++]);
        *at++ = '\\';
        *at++ = c == '\\' ? '\\' : 'x';
        if (c != '\\') {
            *at++ = digits[c >> 4];
            *at++ = digits[c & 0xF];
        }
    }
    return at;
}

// Of a digest and 64 bits that follow.
std::uint64_t mixed(std::uint64_t digest, std::uint64_t word) {
    constexpr std::uint64_t odd = 0x9E3779B97F4A7C15; // 2^64 divided by the golden ratio
    constexpr unsigned half = 32;
    const std::uint64_t product = (digest ^ word) * odd;
    return product ^ product >> half;
}

} // namespace

array_t::array_t(const columnType_t& type) : m_form(type.form) {
    m_members.reserve(type.members.size());
    for (const columnType_t& member : type.members) {
        m_members.emplace_back(member);
    }
    if (hasOffsets()) {
        m_offsets.grow(sizeof(std::int32_t), 0); // a column without rows has one offset, too
    }
}

std::size_t array_t::valueBytes(std::size_t rows) const {
    switch (m_form) {
    case form_t::boolean: return bitBytes(rows);
    case form_t::integer:
    case form_t::number:
    case form_t::instant: return rows * sizeof(std::int64_t);
    case form_t::date: return rows * sizeof(std::int32_t);
    case form_t::text:
    case form_t::bytes: return m_used;
    case form_t::list:
    case form_t::object: break;
    }
    return 0;
}

void array_t::grow(std::size_t rows) {
    const std::size_t old = m_hasValues ? m_capacity : 0;
    m_capacity = std::max({rows, 2 * m_capacity, leastRows});
    m_validity.grow(bitBytes(m_capacity), bitBytes(old));
    if (hasOffsets()) {
        m_offsets.grow((m_capacity + 1) * sizeof(std::int32_t),
                       m_hasValues ? (old + 1) * sizeof(std::int32_t) : 0);
    } else if (m_form == form_t::object) {
        for (array_t& member : m_members) {
            member.reserve(m_capacity);
        }
    } else {
        m_values.grow(valueBytes(m_capacity), valueBytes(old));
    }
}

char* array_t::room(std::size_t size) {
    if (m_values.size() - m_used < size) {
        m_values.grow(2 * (m_used + size), m_used);
    }
    return m_values.data() + m_used;
}

void array_t::setText(std::size_t row, std::string_view bytes) {
    setPresent(row);
    if (std::all_of(bytes.begin(), bytes.end(), isPlain)) {
        std::copy(bytes.begin(), bytes.end(), room(bytes.size()));
        m_used += bytes.size();
        return;
    }
    char* const at = room(longestEscape * bytes.size());
    m_used += static_cast<std::size_t>(writeEscaped(at, bytes) - at);
}

void array_t::setBytes(std::size_t row, std::string_view bytes) {
    setPresent(row);
    std::copy(bytes.begin(), bytes.end(), room(bytes.size()));
    m_used += bytes.size();
}

std::size_t array_t::addItem() {
    if (m_used > 0) {
        m_members[0].endRow(m_used - 1);
    }
    m_members[0].reserve(m_used + 1);
    return m_used++;
}

void array_t::endVariableRow(std::size_t row) {
    if (hasOffsets()) {
        m_offsets.as<std::int32_t>()[row + 1] = static_cast<std::int32_t>(m_used);
        return;
    }
    for (array_t& member : m_members) {
        member.endRow(row);
    }
}

void array_t::finish(std::size_t rows) {
    m_rows = rows;
    m_capacity = rows;
    if (m_form == form_t::list && m_used > 0) {
        m_members[0].endRow(m_used - 1);
    }
    for (array_t& member : m_members) {
        member.finish(m_form == form_t::list ? m_used : rows);
    }
    std::size_t present = 0;
    for (std::size_t byte = 0; m_hasValues && byte < bitBytes(rows); ++byte) {
        present += std::bitset<8>(m_validity.as<unsigned char>()[byte]).count();
    }
    m_nullCount = rows - present;
    m_validity.shrink(bitBytes(rows));
    m_offsets.shrink((rows + 1) * sizeof(std::int32_t));
    m_values.shrink(valueBytes(rows));
}

std::uint64_t array_t::digest(std::uint64_t begin) const {
    std::uint64_t digest = mixed(begin, m_rows);
    for (const memory_t* const memory : {&m_validity, &m_offsets, &m_values}) {
        digest = mixed(digest, memory->size());
        for (std::size_t at = 0; at < memory->size(); at += sizeof(std::uint64_t)) {
            std::uint64_t word = 0;
            std::memcpy(&word, memory->data() + at, std::min(sizeof(word), memory->size() - at));
            digest = mixed(digest, word);
        }
    }
    for (const array_t& member : m_members) {
        digest = member.digest(digest);
    }
    return digest;
}

std::size_t array_t::bytes(std::size_t rows) const {
    if (!m_hasValues) {
        return 0;
    }
    std::size_t size = bitBytes(rows) + valueBytes(rows);
    if (hasOffsets()) {
        size += rows * sizeof(std::int32_t);
    }
    for (const array_t& member : m_members) {
        size += member.bytes(m_form == form_t::list ? m_used : rows);
    }
    return size;
}

bool array_t::isLarge() const {
    return m_used >= largeSize ||
           std::any_of(m_members.begin(), m_members.end(),
                       [](const array_t& member) { return member.isLarge(); });
}
