#include "tools/record/satelliteGroups.h"

#include <algorithm>
#include <iterator>
#include <tuple>

#include "tools/record/degrees.h"

namespace {

constexpr double mostElevation = halfTurn / 2;
constexpr double mostAzimuth = 2 * halfTurn;

bool hasAngles(const satellite_t& satellite) {
    return satellite.hasPrn && satellite.hasElevation && satellite.hasAzimuth &&
           satellite.elevation >= 0 && satellite.elevation <= mostElevation &&
           satellite.azimuth >= 0 && satellite.azimuth <= mostAzimuth;
}

// The numbers in a sentence that describe its group.
struct head_t {
    unsigned count = 0;
    unsigned number = 0;
    unsigned inView = 0;
    bool isReadable = false;
};

head_t headOf(const kalo::gsvMsg_t& view) {
    head_t head;
    unsigned blocks = 0;
    const bool hasNumber = view.decodeMessageNumber(head.number);
    head.number = hasNumber ? head.number : 0;
    head.isReadable = hasNumber && view.decodeMessageCount(head.count) &&
                      view.decodeTotalSatCount(head.inView) && view.decodeSatCount(blocks);
    return head;
}

void add(satelliteGroup_t& group, const satelliteList_t& satellites) {
    std::vector<satellite_t>& held = group.satellites;
    for (const satellite_t& satellite : satellites) {
        if (!hasAngles(satellite)) {
            continue;
        }
        const auto place =
            std::lower_bound(held.begin(), held.end(), satellite.prn,
                             [](const satellite_t& one, unsigned prn) { return one.prn < prn; });
        if (place != held.end() && place->prn == satellite.prn) {
            *place = satellite;
        } else if (held.size() < satelliteGroups_t::mostSatellites) {
            held.insert(place, satellite);
        }
    }
}

// These functions name all members, so that none is forgotten.
auto membersOf(const openGroup_t& open) {
    const auto& [key, count, last, isRemains, group] = open;
    return std::tie(key, count, last, isRemains, group);
}

auto membersOf(const satelliteGroup_t& group) {
    const auto& [hasSignalId, signalId, inView, satellites] = group;
    return std::tie(hasSignalId, signalId, inView, satellites);
}

// Without what does not count.
auto valuesOf(const satellite_t& satellite) {
    const auto& [hasPrn, hasElevation, hasAzimuth, hasSnr, prn, elevation, azimuth, snr] =
        satellite;
    return std::tuple(hasPrn, hasElevation, hasAzimuth, hasSnr, hasPrn ? prn : 0,
                      hasElevation ? elevation : 0, hasAzimuth ? azimuth : 0, hasSnr ? snr : 0);
}

} // namespace

bool operator==(const satellite_t& a, const satellite_t& b) { return valuesOf(a) == valuesOf(b); }

bool operator==(const satelliteGroup_t& a, const satelliteGroup_t& b) {
    return membersOf(a) == membersOf(b);
}

bool operator==(const openGroup_t& a, const openGroup_t& b) { return membersOf(a) == membersOf(b); }

std::vector<openGroup_t> satelliteGroups_t::openGroups() const {
    std::vector<slot_t> slots;
    std::copy_if(m_slots.begin(), m_slots.end(), std::back_inserter(slots),
                 [](const slot_t& slot) { return slot.heard > 0; });
    std::sort(slots.begin(), slots.end(),
              [](const slot_t& a, const slot_t& b) { return a.heard < b.heard; });
    for (slot_t& slot : slots) { // drops what is left of other groups and is not read any more
        slot.group.hasSignalId = false;
        slot.group.signalId = 0;
        if (slot.isRemains) {
            slot.count = 0;
            slot.group = {};
        }
    }
    return {slots.begin(), slots.end()};
}

void satelliteGroups_t::startFrom(const std::vector<openGroup_t>& groups) {
    m_slots.clear();
    m_sentences = 0;
    for (const openGroup_t& group : groups) {
        m_slots.push_back({group, ++m_sentences});
    }
}

bool satelliteGroups_t::offer(const sender_t& sender, const kalo::gsvMsg_t& view,
                              const satelliteList_t& satellites) {
    ++m_sentences;
    const head_t head = headOf(view);
    const bool isLast = head.number == head.count;
    const bool mayHaveSignal = view.fieldCount() % 4 == 1 && view.fieldCount() > 1;
    // Whether the sentence is the next one of an open group, or of a group without its first
    // sentence.
    const auto continues = [&](const slot_t* slot) {
        return slot != nullptr && !slot->isRemains && head.isReadable &&
               head.number == slot->last + 1 && head.count == slot->count &&
               head.inView == slot->group.inView;
    };
    const auto continuesRemains = [&](const slot_t* slot) {
        return slot != nullptr && slot->isRemains && head.number == slot->last + 1;
    };
    m_key.assign(sender.prefix).append(1, '\0').append(sender.station).append(1, '\0');
    m_key.append(view.addressField()->toString()).append(1, ',');
    const std::size_t withoutSignal = m_key.size();
    if (mayHaveSignal) {
        m_key += view.field(view.fieldCount() - 1)->toString();
    }
    slot_t* slot = find(m_key);
    if (head.number == 1) {
        m_incomplete += slot != nullptr ? 1 : 0;
        slot = slot != nullptr ? slot : &open(m_key);
        slot->count = head.count;
        slot->isRemains = !head.isReadable;
        slot->group.inView = head.inView;
        slot->group.satellites.clear();
    } else {
        const bool isOpen = slot != nullptr && !slot->isRemains;
        if (isLast && m_key.size() > withoutSignal && !continues(slot)) {
            // Some devices name the signal in the last sentence only.
            slot_t* const unnamed = find(std::string_view(m_key).substr(0, withoutSignal));
            const bool isOfUnnamed = continues(unnamed) || (!isOpen && !continuesRemains(slot) &&
                                                            continuesRemains(unnamed));
            slot = isOfUnnamed ? unnamed : slot;
        }
        if (!continues(slot) && !continuesRemains(slot)) {
            if (isOpen || (slot != nullptr && head.number == 0)) {
                return false; // out of order, or without a number
            }
            // Another group, whose first sentence is missing.
            m_incomplete += slot != nullptr ? 1 : 0;
            slot = slot != nullptr ? slot : &open(m_key);
            slot->isRemains = true;
        }
    }
    slot->last = head.number;
    slot->heard = m_sentences;
    if (slot->isRemains) {
        return false;
    }
    add(slot->group, satellites);
    if (!isLast) {
        return false;
    }
    slot->group.hasSignalId = mayHaveSignal && view.decodeSignalId(slot->group.signalId);
    std::swap(m_finished, slot->group);
    slot->heard = 0;
    ++(m_finished.satellites.size() == m_finished.inView ? m_complete : m_partial);
    return true;
}

void satelliteGroups_t::finish() {
    for (slot_t& slot : m_slots) {
        m_incomplete += slot.heard > 0 ? 1 : 0;
        slot.heard = 0;
    }
}

satelliteGroups_t::slot_t* satelliteGroups_t::find(std::string_view key) {
    const auto found = std::find_if(m_slots.begin(), m_slots.end(), [&](const slot_t& slot) {
        return slot.heard > 0 && slot.key == key;
    });
    return found == m_slots.end() ? nullptr : &*found;
}

// A free slot, a new one, or that of the group that was silent longest.
satelliteGroups_t::slot_t& satelliteGroups_t::open(std::string_view key) {
    auto slot =
        std::min_element(m_slots.begin(), m_slots.end(),
                         [](const slot_t& a, const slot_t& b) { return a.heard < b.heard; });
    if (slot == m_slots.end() || (slot->heard > 0 && m_slots.size() < mostGroups)) {
        slot = m_slots.emplace(m_slots.end());
    }
    m_incomplete += slot->heard > 0 ? 1 : 0;
    slot->key.assign(key);
    slot->heard = m_sentences;
    slot->group.satellites.clear();
    return *slot;
}
