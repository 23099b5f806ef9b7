// Findings of the same kind about the same sender or value, taken together.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tools/analysis/check.h"

class findingGroups_t : public findingTaker_t {
public:
    void take(finding_t finding) override;

    /// In the order in which they began. Each is its first finding, with the number of all and the
    /// place of the last one.
    const std::vector<finding_t>& all() const { return m_groups; }

private:
    finding_t& groupOf(const finding_t& finding);

    std::vector<finding_t> m_groups;
    std::map<std::pair<findingId_t, std::string>, std::size_t> m_places;
};

/// What a finding says, for people.
std::string messageOf(const finding_t& finding);
