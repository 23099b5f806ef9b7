#include "tools/record/dictionary.h"

#include <algorithm>

#include "tools/input/text.h"

namespace {

constexpr std::size_t endLength = 3;

// The key by which a sentence is looked up: the whole name if it is proprietary, otherwise the end
// of its address.
std::string_view keyOf(std::string_view address) {
    const bool isProprietary = address.size() > 1 && address[0] == '$' && address[1] == 'P';
    if (isProprietary) {
        return address.substr(1);
    }
    return address.size() > endLength ? address.substr(address.size() - endLength)
                                      : std::string_view();
}

// Encapsulated sentences are those of AIS only.
bool mayBeEncapsulated(std::string_view key) { return key == "VDM" || key == "VDO"; }

} // namespace

void dictionary_t::add(dictionarySentence_t sentence) {
    const auto known = std::find_if(m_sentences.begin(), m_sentences.end(),
                                    [&](const auto& row) { return row.name == sentence.name; });
    if (known != m_sentences.end()) {
        auto& others = m_byAddress[known->address];
        others.erase(std::remove(others.begin(), others.end(), &*known), others.end());
        sentence.index = known->index;
        *known = std::move(sentence);
    } else {
        sentence.index = m_sentences.size();
        m_sentences.push_back(std::move(sentence));
    }
    dictionarySentence_t& added = known != m_sentences.end() ? *known : m_sentences.back();
    for (const dictionaryRow_t& row : added.rows) {
        if (row.kind == valueKind_t::time && row.isOwn && added.time == nullptr) {
            added.time = &row;
        }
        if (row.kind == valueKind_t::date && added.date == nullptr) {
            added.date = &row;
        }
    }
    m_byAddress[added.address].push_back(&added);
}

const dictionarySentence_t* dictionary_t::find(const kalo::nmeaFormat_t& sentence) const {
    const std::string& address = sentence.field(0)->toString();
    const std::string_view key = keyOf(address);
    const auto found = m_byAddress.find(std::string(key));
    if (found == m_byAddress.end() || (address[0] == '!' && !mayBeEncapsulated(key))) {
        return nullptr;
    }
    const dictionarySentence_t* other = nullptr; // the description for all other subtypes
    for (const dictionarySentence_t* row : found->second) {
        if (row->subtype.empty()) {
            other = row;
            continue;
        }
        const kalo::nmeaField_t* const field = sentence.field(row->subtypeField);
        if (field != nullptr && field->toString() == row->subtype) {
            return row;
        }
    }
    return other;
}

const dictionarySentence_t* dictionary_t::named(std::string_view name) const {
    const auto found =
        std::find_if(m_sentences.begin(), m_sentences.end(), [&](const dictionarySentence_t& row) {
            return std::equal(name.begin(), name.end(), row.name.begin(), row.name.end(),
                              [](char a, char b) { return toCapital(a) == toCapital(b); });
        });
    return found == m_sentences.end() ? nullptr : &*found;
}
