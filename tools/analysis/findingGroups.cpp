#include "tools/analysis/findingGroups.h"

#include <algorithm>

#include "tools/terminal/message.h"

void findingGroups_t::take(finding_t finding) {
    finding_t& group = groupOf(finding);
    if (group.id == findingId_t::count) {
        group = std::move(finding);
    } else {
        group.last = std::move(finding.last);
        group.count += finding.count;
    }
}

// There is a group for each kind and each sender or value. Hostile input can have any number of
// senders, so beyond the limit a finding joins the first group of its kind.
finding_t& findingGroups_t::groupOf(const finding_t& finding) {
    constexpr std::size_t most = 4096;
    const auto found = m_places.find({finding.id, finding.what});
    if (found != m_places.end()) {
        return m_groups[found->second];
    }
    if (m_groups.size() >= most) {
        const auto first =
            std::find_if(m_groups.begin(), m_groups.end(),
                         [&](const finding_t& group) { return group.id == finding.id; });
        if (first != m_groups.end()) {
            return *first;
        }
    }
    m_places.emplace(std::make_pair(finding.id, finding.what), m_groups.size());
    return m_groups.emplace_back();
}

std::string messageOf(const finding_t& finding) {
    std::string text = kindOf(finding.id).meaning;
    for (const std::string& part : {finding.what, finding.detail}) {
        text += part.empty() ? "" : ": " + part;
    }
    return printable(text);
}
