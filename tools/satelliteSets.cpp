#include "tools/satelliteSets.h"

bool satelliteSets_t::offer(const kalo::gsvMsg_t& view, satelliteSet_t& out) {
    out = {};
    out.hasSignalId = view.decodeSignalId(out.signalId);
    std::string key = view.addressField()->toString();
    if (view.fieldCount() % 4 == 1) {
        key += "," + view.field(view.fieldCount() - 1)->toString(); // whatever the signal is
    }
    std::unique_ptr<group_t>& group = m_groups[key];
    if (group == nullptr) {
        group = std::make_unique<group_t>();
    }
    unsigned number = 0;
    const bool begins = view.decodeMessageNumber(number) && number == 1;
    m_incomplete += begins && group->open ? 1 : 0;
    const bool accepted = group->set.decode(view);
    if (begins && !accepted) {
        group->set.resetState(); // nothing that follows may complete the group before it
    }
    // A refused sentence belongs to the group that is open, or is what remains of another.
    group->open = !accepted || !group->set.isComplete();
    if (group->open) {
        return false;
    }
    ++m_complete;
    for (const auto& [prn, sat] : group->set.sats()) {
        out.satellites.push_back(
            {false, true, true, true, sat.hasSnr, prn, sat.elevation, sat.azimuth, sat.snr});
    }
    return true;
}

void satelliteSets_t::finish() {
    for (const auto& [key, group] : m_groups) {
        m_incomplete += group->open ? 1 : 0;
        group->open = false;
    }
}
