// Puts groups of GSV sentences together, one group at a time for each sender and signal.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "kalo/nmea/gsvMsg.h"
#include "tools/record/clue.h"

/// The satellites that a group of sentences has told of.
struct satelliteGroup_t {
    bool hasSignalId = false;
    unsigned signalId = 0;
    unsigned inView = 0;                 ///< how many the group announces
    std::vector<satellite_t> satellites; ///< those with angles, by their identifiers
};

/// Who has sent a sentence, as far as the line tells it.
struct sender_t {
    std::string_view prefix;
    std::string_view station; ///< by its tag block
};

/// Memory stays bounded: of more than `mostGroups` that are open the one that was silent longest is
/// given up, and a group holds at most `mostSatellites`.
class satelliteGroups_t {
public:
    static constexpr std::size_t mostGroups = 256;
    static constexpr std::size_t mostSatellites = 256;

    /// Offers a sentence with its satellites. True when it was the last one of a group whose
    /// sentences all came, in their order; `group` then is that group.
    bool offer(const sender_t& sender, const kalo::gsvMsg_t& view,
               const satelliteList_t& satellites);
    const satelliteGroup_t& group() const { return m_finished; }
    /// No more sentences: the groups that are open stay incomplete.
    void finish();

    /// Groups that hold as many satellites as they announce.
    std::uint64_t complete() const { return m_complete; }
    /// Groups whose sentences all came, and that hold another number of satellites.
    std::uint64_t partial() const { return m_partial; }
    /// Groups that lack a sentence.
    std::uint64_t incomplete() const { return m_incomplete; }

private:
    struct slot_t {
        std::string key;         // sender, address and signal
        std::uint64_t heard = 0; // when its last sentence came; 0: the slot is free
        unsigned count = 0;
        unsigned last = 0;      // number of its last sentence
        bool isRemains = false; // its first sentence is missing, or says too little
        satelliteGroup_t group;
    };

    slot_t* find(std::string_view key);
    slot_t& open(std::string_view key);

    std::vector<slot_t> m_slots; // keep their memory for the next group
    std::uint64_t m_sentences = 0;
    std::string m_key;
    satelliteGroup_t m_finished;
    std::uint64_t m_complete = 0;
    std::uint64_t m_partial = 0;
    std::uint64_t m_incomplete = 0;
};
