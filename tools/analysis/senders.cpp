#include "tools/analysis/senders.h"

#include "tools/record/registry.h"

namespace {

// The name of its type; the address, if a sentence has no named values.
std::string_view kindOf(const record_t& record) {
    if (record.fault != fault_t::none) {
        return "malformed";
    }
    const std::string_view type = typeNameOf(record);
    const auto* const sentence = std::get_if<const kalo::nmeaFormat_t*>(&record.content);
    return type.empty() && sentence != nullptr ? std::string_view((*sentence)->field(0)->toString())
                                               : type;
}

unsigned letter(std::string_view text, std::size_t fromEnd) {
    return text.size() < fromEnd ? 0U : static_cast<unsigned char>(text[text.size() - fromEnd]);
}

} // namespace

std::size_t senders_t::of(const record_t& record) {
    // Most logs repeat a few senders: those are found here; the map has the rest.
    const std::string_view kind = kindOf(record);
    const std::size_t place = (letter(kind, 1) * 5 + letter(kind, 2) * 25 + letter(kind, 3) * 3 +
                               letter(record.talker, 1) * 7 + letter(record.prefix, 1)) %
                              m_recent.size();
    if (m_recent[place] < m_names.size()) {
        const senderName_t& name = m_names[m_recent[place]];
        if (name.type == kind && name.talker == record.talker && name.prefix == record.prefix &&
            name.source == m_source) {
            return m_recent[place];
        }
    }
    m_recent[place] = find(record, kind);
    return m_recent[place];
}

std::size_t senders_t::find(const record_t& record, std::string_view kind) {
    m_key.assign(m_source);
    for (const std::string_view part : {record.prefix, record.talker, kind}) {
        m_key.append(1, '\0').append(part);
    }
    const auto found = m_places.find(m_key);
    if (found != m_places.end()) {
        return found->second;
    }
    if (m_names.size() >= most - 1 || m_nameBytes + m_key.size() > mostNameBytes) {
        if (m_others >= m_names.size()) {
            m_others = m_names.size();
            m_names.emplace_back();
        }
        return m_others;
    }
    m_nameBytes += m_key.size();
    m_places.emplace(m_key, m_names.size());
    m_names.push_back(
        {m_source, std::string(record.prefix), std::string(record.talker), std::string(kind)});
    return m_names.size() - 1;
}
