#include "kalo/nmea/nmeaFormat.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "kalo/nmea/commaScan.h"
#include "kalo/nmea/nmeaFormatState.h"
#include "kalo/nmea/sentences.h"
#include "kalo/util/numberText.h"

namespace kalo {

namespace {

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

// Whole names are those of proprietary sentences, so that other addresses need not be compared.
constexpr char firstOfWhole = 'P';
constexpr bool areProprietary() {
    for (const name_t& name : wholeNames) {
        if (name.text[0] != firstOfWhole) {
            return false;
        }
    }
    return true;
}
static_assert(areProprietary(), "whole names are looked for behind one letter");

// The ends at places that a multiplication gives, no two at the same one.
constexpr unsigned placeBits = 6;
constexpr std::size_t placeOf(std::uint32_t letters, std::uint32_t factor) {
    return letters * factor >> (32 - placeBits);
}

constexpr bool separates(std::uint32_t factor) {
    bool taken[std::size_t{1} << placeBits] = {};
    for (const end_t& end : ends) {
        bool& place = taken[placeOf(end.letters, factor)];
        if (place) {
            return false;
        }
        place = true;
    }
    return true;
}

constexpr std::uint32_t findFactor() {
    std::uint32_t factor = 0x9E3779B1; // the golden ratio; others follow from it
    while (!separates(factor)) {
        factor = factor * 1664525 + 1013904223;
    }
    return factor;
}
constexpr std::uint32_t placeFactor = findFactor();

constexpr auto endsByPlace = [] {
    std::array<end_t, std::size_t{1} << placeBits> table{};
    for (const end_t& end : ends) {
        table[placeOf(end.letters, placeFactor)] = end;
    }
    return table;
}();

nmeaMsgType_t recognise(std::string_view address) {
    if (address.size() < endLength) {
        return msgTypeUnknown;
    }
    const std::uint32_t letters = lettersOf(address.data() + address.size() - endLength);
    if (address[0] == '!') {
        for (const end_t& end : encapsulatedEnds) {
            if (end.letters == letters) {
                return end.type;
            }
        }
        return msgTypeUnknown;
    }
    if (address[1] == firstOfWhole) {
        for (const name_t& name : wholeNames) {
            if (address.substr(1) == name.text) {
                return name.type;
            }
        }
    }
    const end_t& end = endsByPlace[placeOf(letters, placeFactor)];
    return end.letters == letters ? end.type : msgTypeUnknown;
}

unsigned hexDigit(char c) {
    if (c >= '0' && c <= '9') {
        return static_cast<unsigned>(c - '0');
    }
    const char upper = static_cast<char>(c & ~0x20);
    return upper >= 'A' && upper <= 'F' ? static_cast<unsigned>(upper - 'A' + 10) : 16;
}

#if defined(__GLIBCXX__) && !defined(KALO_PLAIN)

// Copies texts into strings. Most fields are short; this library's strings keep up to 15 characters
// within them. A copy of constant size, whatever follows a short text being copied with it, takes
// two instructions where one of the right size takes a call.
class shortTexts_t {
public:
    shortTexts_t(const char* begin, const char* readable) : m_readable(readable) {
        m_tailLength = std::min(static_cast<std::size_t>(readable - begin), size);
        std::memcpy(m_tail, readable - m_tailLength, m_tailLength);
    }

    void copy(const char* from, std::size_t length, std::string& text) const {
        if (length > size || text.capacity() != size) {
            text.assign(from, length); // or it has memory of its own, which it keeps
            return;
        }
        // Near the end what follows is read from the copy, which has room behind it.
        const auto left = static_cast<std::size_t>(m_readable - from);
        const char* const source = left >= size ? from : m_tail + m_tailLength - left;
        ::new (&text) std::string(source, size); // what was there has nothing to release
        text.erase(length);
    }

private:
    static constexpr std::size_t size = 15;

    const char* m_readable;
    std::size_t m_tailLength;
    char m_tail[2 * size] = {};
};

#else

class shortTexts_t {
public:
    shortTexts_t(const char* /*begin*/, const char* /*readable*/) {}

    void copy(const char* from, std::size_t length, std::string& text) const {
        text.assign(from, length);
    }
};

#endif

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
    const bool hasChecksum = length >= 5 && data[length - 5] == '*';
    unsigned stated = 0;
    if (hasChecksum && !decodeChecksum(data + length - 4, stated)) {
        m_state->formatError = 1;
        return false;
    }
    const unsigned sum = splitFields(data, data + length - (hasChecksum ? 5 : 2), data + length);
    if (hasChecksum && sum != (stated & 0xFF)) {
        m_state->fieldCount = 0;
        m_state->formatError = 2;
        return false;
    }
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

// Splits what lies from `body` to `end` into fields, and returns the exclusive-or of what stands
// behind the start character. Nothing from `readable` on is read.
unsigned nmeaFormat_t::splitFields(const char* body, const char* end, const char* readable) {
    std::vector<nmeaField_t>& fields = m_state->fields;
    nmeaField_t* next = fields.data();
    nmeaField_t* last = next + fields.size();
    const shortTexts_t texts(body, readable);
    const char* start = body;
    const auto endField = [&](const char* to) KALO_ALWAYS_INLINE {
        if (next == last) {
            m_state->addField();
            last = fields.data() + fields.size();
            next = last - 1;
        }
        texts.copy(start, static_cast<std::size_t>(to - start), (next++)->m_text);
        start = to + 1;
    };
    const unsigned sum = scanCommas(body, end, endField);
    endField(end);
    // Only now: an allocation that fails leaves no fields behind.
    m_state->fieldCount = static_cast<std::size_t>(next - fields.data());
    return sum ^ static_cast<unsigned char>(*body);
}

} // namespace kalo
