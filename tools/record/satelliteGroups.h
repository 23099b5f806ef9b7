// Puts groups of GSV sentences together, one group at a time for each sender and signal.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "kalo/nmea/gsvMsg.h"
#include "tools/record/clue.h"

/// The satellites in a group of sentences.
struct satelliteGroup_t {
    bool hasSignalId = false;
    unsigned signalId = 0;
    unsigned inView = 0;                 ///< the number that the group announces
    std::vector<satellite_t> satellites; ///< those with angles, by their identifiers
};

/// A group whose last sentence has not come yet.
struct openGroup_t {
    std::string key; ///< sender, address and signal
    unsigned count = 0;
    unsigned last = 0;      ///< number of its last sentence
    bool isRemains = false; ///< its first sentence is missing or cannot be used
    satelliteGroup_t group;
};

bool operator==(const satellite_t& a, const satellite_t& b);
bool operator==(const satelliteGroup_t& a, const satelliteGroup_t& b);
bool operator==(const openGroup_t& a, const openGroup_t& b);

/// The sender of a sentence, as far as the line tells.
struct sender_t {
    std::string_view prefix;
    std::string_view station; ///< by its tag block
};

/// Memory stays bounded: if more than `mostGroups` are open, the one that was silent longest is
/// given up. A group holds at most `mostSatellites`.
class satelliteGroups_t {
public:
    static constexpr std::size_t mostGroups = 256;
    static constexpr std::size_t mostSatellites = 256;

    /// Takes a sentence with its satellites. True if it was the last one of a group whose sentences
    /// all came in order; `group` is then that group.
    bool offer(const sender_t& sender, const kalo::gsvMsg_t& view,
               const satelliteList_t& satellites);
    const satelliteGroup_t& group() const { return m_finished; }
    /// The groups that are open, the one that was silent longest first.
    std::vector<openGroup_t> openGroups() const;
    /// Goes on with these groups, in that order. The counts are kept.
    void startFrom(const std::vector<openGroup_t>& groups);
    /// Called at the end: groups that are still open are incomplete.
    void finish();

    /// Groups that hold as many satellites as they announce.
    std::uint64_t complete() const { return m_complete; }
    /// Groups whose sentences all came, but with another number of satellites than announced.
    std::uint64_t partial() const { return m_partial; }
    /// Groups that lack a sentence.
    std::uint64_t incomplete() const { return m_incomplete; }

private:
    struct slot_t : openGroup_t {
        std::uint64_t heard = 0; // when its last sentence came; 0: the slot is free
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
