#include "kalo/ntrip/ntripRecordDecoder.h"

#include <string_view>
#include <vector>

#include "kalo/util/stringUtil.h"

namespace kalo {

struct ntripRecordDecoder_t::state_t {
    std::vector<std::string> fields; // those behind the first `count` keep their memory
    std::size_t count = 0;

    void add(std::string_view text) {
        if (count == fields.size()) {
            fields.emplace_back();
        }
        fields[count++] = text;
    }
};

ntripRecordDecoder_t::ntripRecordDecoder_t() : m_state(new state_t) {}

ntripRecordDecoder_t::ntripRecordDecoder_t(const ntripRecordDecoder_t& other)
    : ntripRecordDecoder_t() {
    *this = other;
}

ntripRecordDecoder_t& ntripRecordDecoder_t::operator=(const ntripRecordDecoder_t& other) {
    if (this != &other) {
        *m_state = *other.m_state;
    }
    return *this;
}

ntripRecordDecoder_t::~ntripRecordDecoder_t() { delete m_state; }

void ntripRecordDecoder_t::init(const char* data, unsigned length) {
    m_state->count = 0;
    const std::string_view text(data, length);
    std::size_t begin = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char c = text[at];
        if (c == ';' || c == '\r' || c == '\n') {
            m_state->add(text.substr(begin, at - begin));
            begin = at + 1;
        }
        if (c == '\r' || c == '\n') {
            return;
        }
    }
}

unsigned ntripRecordDecoder_t::fieldCount() const { return static_cast<unsigned>(m_state->count); }

const std::string* ntripRecordDecoder_t::fieldAt(unsigned index) const {
    const bool isThere = index < m_state->count && !m_state->fields[index].empty();
    return isThere ? &m_state->fields[index] : nullptr;
}

bool ntripRecordDecoder_t::decodeField(unsigned index, float& out) const {
    const std::string* field = fieldAt(index);
    return field != nullptr && kalo::decode(*field, out);
}

bool ntripRecordDecoder_t::decodeField(unsigned index, unsigned& out) const {
    const std::string* field = fieldAt(index);
    return field != nullptr && kalo::decode(*field, out, 10);
}

bool ntripRecordDecoder_t::decodeYN(unsigned index, bool& out) const {
    const std::string* field = fieldAt(index);
    if (field == nullptr || (*field != "Y" && *field != "N")) {
        return false;
    }
    out = *field == "Y";
    return true;
}

bool ntripRecordDecoder_t::decodeOneZero(unsigned index, bool& out) const {
    unsigned number = 0;
    if (!decodeField(index, number) || number > 1) {
        return false;
    }
    out = number == 1;
    return true;
}

} // namespace kalo
