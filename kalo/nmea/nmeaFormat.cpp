#include "kalo/nmea/nmeaFormat.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "kalo/nmea/sentences.h"
#include "kalo/util/numberText.h"

namespace kalo {

namespace {

constexpr std::ptrdiff_t blockSize = 8;

// What recognition needs of the list of sentences.
struct name_t {
    addressRule_t rule;
    std::string_view text;
    nmeaMsgType_t type;
};

constexpr auto names = arrayOfSentences([](auto sentence) {
    return name_t{sentence.rule, sentence.name, sentence.type};
});

template <addressRule_t rule>
constexpr std::size_t countOf() {
    std::size_t count = 0;
    for (const name_t& name : names) {
        count += name.rule == rule ? 1 : 0;
    }
    return count;
}

// The names that follow one rule, as a table that is made at compile time.
template <addressRule_t rule, typename Row>
constexpr auto tableOf() {
    std::array<Row, countOf<rule>()> table{};
    std::size_t next = 0;
    for (const name_t& name : names) {
        if (name.rule == rule) {
            table[next++] = Row(name);
        }
    }
    return table;
}

constexpr std::size_t endLength = 3;

constexpr bool endsHaveOneLength() {
    for (const name_t& name : names) {
        if (name.rule != addressRule_t::whole && name.text.size() != endLength) {
            return false;
        }
    }
    return true;
}
static_assert(endsHaveOneLength(), "the end of an address is compared as three letters");

// Three letters as one number, which is compared at once.
constexpr std::uint32_t lettersOf(const char* text) {
    std::uint32_t letters = 0;
    for (std::size_t i = 0; i < endLength; ++i) {
        letters = letters << 8 | static_cast<unsigned char>(text[i]);
    }
    return letters;
}

struct end_t {
    std::uint32_t letters = 0;
    nmeaMsgType_t type = msgTypeUnknown;

    constexpr end_t() = default;
    explicit constexpr end_t(const name_t& name)
        : letters(lettersOf(name.text.data())), type(name.type) {}
};

constexpr auto wholeNames = tableOf<addressRule_t::whole, name_t>();
constexpr auto ends = tableOf<addressRule_t::end, end_t>();
constexpr auto encapsulatedEnds = tableOf<addressRule_t::encapsulatedEnd, end_t>();

template <typename Table>
nmeaMsgType_t recogniseEnd(std::string_view address, const Table& table) {
    if (address.size() < endLength) {
        return msgTypeUnknown;
    }
    const std::uint32_t letters = lettersOf(address.data() + address.size() - endLength);
    for (const end_t& row : table) {
        if (row.letters == letters) {
            return row.type;
        }
    }
    return msgTypeUnknown;
}

nmeaMsgType_t recognise(std::string_view address) {
    if (address[0] == '!') {
        return recogniseEnd(address, encapsulatedEnds);
    }
    for (const name_t& row : wholeNames) {
        if (address.substr(1) == row.text) {
            return row.type;
        }
    }
    return recogniseEnd(address, ends);
}

// Eight bytes as one number, the first the lowest.
std::uint64_t loadBlock(const char* data) {
    std::uint64_t block = 0;
    for (unsigned i = 0; i < blockSize; ++i) {
        block |= std::uint64_t{static_cast<unsigned char>(data[i])} << (8 * i);
    }
    return block;
}

unsigned exclusiveOr(const char* begin, const char* end) {
    std::uint64_t sum = 0;
    for (; end - begin >= blockSize; begin += blockSize) {
        sum ^= loadBlock(begin);
    }
    sum ^= sum >> 32;
    sum ^= sum >> 16;
    sum ^= sum >> 8;
    for (; begin != end; ++begin) {
        sum ^= static_cast<unsigned char>(*begin);
    }
    return sum & 0xFF;
}

// The high bit of each byte of `block` that is a comma.
std::uint64_t commasOf(std::uint64_t block) {
    constexpr std::uint64_t ones = 0x0101010101010101;
    constexpr std::uint64_t lowBits = 0x7F * ones;
    const std::uint64_t differences = block ^ (',' * ones);
    return ~(((differences & lowBits) + lowBits) | differences | lowBits);
}

unsigned hexDigit(char c) {
    if (c >= '0' && c <= '9') {
        return static_cast<unsigned>(c - '0');
    }
    const char upper = static_cast<char>(c & ~0x20);
    return upper >= 'A' && upper <= 'F' ? static_cast<unsigned>(upper - 'A' + 10) : 16;
}

// The two characters of a checksum, which may be all that the rules for numbers accept.
bool decodeChecksum(const char* data, unsigned& out) {
    const unsigned high = hexDigit(data[0]);
    const unsigned low = hexDigit(data[1]);
    if (high < 16 && low < 16) {
        out = high * 16 + low;
        return true;
    }
    return decodeText(data, 2, out, 16);
}

} // namespace

struct nmeaFormat_t::state_t {
    bool valid = false;
    int formatError = 0;
    nmeaMsgType_t type = msgTypeUnknown;
    // The first `fieldCount` fields are in use; those after them keep their memory for the next
    // sentence.
    std::vector<nmeaField_t> fields;
    std::size_t fieldCount = 0;

    // One more field, which is not in use yet.
    void addField() {
        constexpr std::size_t usualCount = 24; // what nearly all sentences keep to
        if (fields.empty()) {
            fields.reserve(usualCount);
        }
        fields.emplace_back();
    }
};

nmeaFormat_t::nmeaFormat_t() : m_state(new state_t) {}

nmeaFormat_t::nmeaFormat_t(const char* data, std::size_t length) : nmeaFormat_t() {
    init(data, length);
}

nmeaFormat_t::nmeaFormat_t(const nmeaFormat_t& other) : nmeaFormat_t() { *this = other; }

nmeaFormat_t& nmeaFormat_t::operator=(const nmeaFormat_t& other) {
    if (this == &other) {
        return *this;
    }
    m_state->valid = false;
    m_state->type = msgTypeUnknown;
    m_state->fieldCount = 0;
    for (unsigned i = 0; i < other.fieldCount(); ++i) {
        if (i == m_state->fields.size()) {
            m_state->addField();
        }
        m_state->fields[i] = *other.field(i);
    }
    m_state->fieldCount = other.fieldCount();
    m_state->formatError = other.m_state->formatError;
    m_state->type = other.m_state->type;
    m_state->valid = other.m_state->valid;
    return *this;
}

nmeaFormat_t::~nmeaFormat_t() { delete m_state; }

bool nmeaFormat_t::init(const char* data, std::size_t length) {
    m_state->valid = false;
    m_state->type = msgTypeUnknown;
    m_state->fieldCount = 0;

    if (length == 0 || (data[0] != '$' && data[0] != '!')) {
        m_state->formatError = 0;
        return false;
    }
    if (length < 2 || data[length - 2] != '\r' || data[length - 1] != '\n') {
        m_state->formatError = 1;
        return false;
    }
    std::size_t bodyLength = length - 2;
    if (length >= 5 && data[length - 5] == '*') {
        bodyLength = length - 5;
        unsigned stated = 0;
        if (!decodeChecksum(data + length - 4, stated)) {
            m_state->formatError = 1;
            return false;
        }
        if (exclusiveOr(data + 1, data + bodyLength) != (stated & 0xFF)) {
            m_state->formatError = 2;
            return false;
        }
    }
    splitFields(data, bodyLength);
    m_state->type = recognise(m_state->fields[0].toString());
    m_state->valid = true;
    return true;
}

bool nmeaFormat_t::isValid() const { return m_state->valid; }

int nmeaFormat_t::formatError() const { return m_state->formatError; }

nmeaMsgType_t nmeaFormat_t::type() const { return m_state->type; }

unsigned nmeaFormat_t::fieldCount() const { return static_cast<unsigned>(m_state->fieldCount); }

const nmeaField_t* nmeaFormat_t::field(unsigned index) const {
    return index < m_state->fieldCount ? &m_state->fields[index] : nullptr;
}

void nmeaFormat_t::splitFields(const char* body, std::size_t length) {
    if (length == 0) {
        return;
    }
    // A string takes a text of constant size without a call and then drops the rest of it, so what
    // follows a short field is copied with it; near the end of the body, from a copy of its own.
    constexpr std::size_t shortLength = 15;
    const char* const end = body + length;
    char tail[2 * shortLength] = {};
    const std::size_t tailLength = std::min(length, shortLength);
    std::memcpy(tail, end - tailLength, tailLength);
    std::vector<nmeaField_t>& fields = m_state->fields;
    nmeaField_t* next = fields.data();
    nmeaField_t* last = next + fields.size();
    const auto addField = [&](const char* from, const char* to) {
        if (next == last) {
            m_state->addField();
            last = fields.data() + fields.size();
            next = last - 1;
        }
        std::string& text = (next++)->m_text;
        const auto size = static_cast<std::size_t>(to - from);
        if (size > shortLength) {
            text.assign(from, size);
            return;
        }
        const auto left = static_cast<std::size_t>(end - from);
        text = std::string(left >= shortLength ? from : tail + tailLength - left, shortLength);
        text.erase(size);
    };
    const char* start = body;
    const char* block = body;
    for (; end - block >= blockSize; block += blockSize) {
        std::uint64_t commas = commasOf(loadBlock(block));
        for (; commas != 0; commas &= commas - 1) {
            const char* const comma = block + __builtin_ctzll(commas) / 8;
            addField(start, comma);
            start = comma + 1;
        }
    }
    for (; block != end; ++block) {
        if (*block == ',') {
            addField(start, block);
            start = block + 1;
        }
    }
    addField(start, end);
    // Only now: an allocation that fails leaves no fields behind.
    m_state->fieldCount = static_cast<std::size_t>(next - fields.data());
}

} // namespace kalo
