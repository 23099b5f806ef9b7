// Looks for faults in a recording, and for anything else that an operator should know about it.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/analysis/senders.h"
#include "tools/analysis/voyage.h"
#include "tools/record/recordReader.h"

/// A kind of finding. Its name is for programs and stays as it is.
struct findingKind_t {
    const char* name;
    bool isFault; ///< otherwise a note
    const char* meaning;
};

enum class findingId_t : unsigned {
    // first the malformed records, in the order of `fault_t`, which has one more: that of a good
    // one
    timeBackwards = faultCount - 1,
    timeJump,
    timeStandsStill,
    rollover,
    duplicate,
    incompleteGroup,
    outOfRange,
    positionJump,
    validWithoutPosition,
    missingChecksum,
    silence,
    count
};
constexpr std::size_t findingKindCount = static_cast<std::size_t>(findingId_t::count);

/// In the order of `findingId_t`.
extern const findingKind_t findingKinds[findingKindCount];

inline const findingKind_t& kindOf(findingId_t id) {
    return findingKinds[static_cast<std::size_t>(id)];
}

/// Where a record stands.
struct recordPlace_t {
    std::string source;
    std::uint64_t line = 0;
    std::uint64_t offset = 0;
};

struct finding_t {
    findingId_t id = findingId_t::count;
    std::string what;   ///< which sender or value; findings that share it are one group
    std::string detail; ///< of the first one
    std::string raw;    ///< its bytes, as far as a message goes
    recordPlace_t first;
    recordPlace_t last;
    std::uint64_t count = 1;
};

struct checkOptions_t {
    double maxSpeed = 100; ///< m/s between two positions
    double maxGap = 60;    ///< seconds between two records of one sender
};

/// Receives the findings one by one, in the order of the input. Findings about the end of an input
/// come last.
class findingTaker_t {
public:
    virtual ~findingTaker_t() = default;
    virtual void take(finding_t finding) = 0;
};

class checker_t {
public:
    checker_t(const checkOptions_t& options, findingTaker_t& taker)
        : m_options(options), m_taker(taker) {}

    void beginInput(const std::string& name, const recordReader_t& reader);
    void add(const record_t& record);
    /// Leaves out the record that was read last.
    void pass();
    void endInput();

private:
    /// What is known about one sender.
    struct state_t {
        std::uint64_t count = 0;
        std::optional<double> first; ///< moments
        std::optional<double> last;
        std::optional<sentAt_t> lastTime; ///< of its own
        unsigned standsStill = 0;
        std::string name;
        std::string text; ///< the last one with a time
        recordPlace_t place;
    };

    struct feed_t {
        bool hasChecksums = false;
        /// Sentences without a checksum before the first one with a checksum, by name.
        std::map<std::string, finding_t> pending;
    };

    void checkMalformed(const record_t& record);
    void checkTime(const record_t& record, state_t& state);
    bool checkRollover(const record_t& record, const std::string& name);
    void checkGroups(finding_t finding);
    void checkValues(const record_t& record);
    void checkFix(const fix_t* fix);
    void checkChecksum(const record_t& record);
    bool takesFeedBytes(std::size_t count);
    recordPlace_t placeOf(const record_t& record) const;
    finding_t findingAt(findingId_t id, const record_t& record, std::string what,
                        std::string detail) const;
    void report(findingId_t id, const record_t& record, std::string what, std::string detail);

    checkOptions_t m_options;
    findingTaker_t& m_taker;
    const recordReader_t* m_reader = nullptr;
    std::string m_source;
    senders_t m_senders;
    std::vector<state_t> m_states;
    recordPlace_t m_place;   // of the last record
    bool m_isPassed = false; // the record that was read last
    std::uint64_t m_incompleteGroups = 0;
    std::optional<double> m_end;      // the last moment
    std::optional<double> m_lastDate; // the last instant whose day a record stated
    std::optional<double> m_newDate;  // one 1024 weeks off, until a later one confirms it
    epochs_t m_epochs;
    std::optional<fix_t> m_lastFix;
    std::map<std::string, feed_t> m_feeds; // by prefix
    std::size_t m_feedBytes = 0;           // that they take
    scratch_t m_scratch;
    measurements_t m_measured;
};
