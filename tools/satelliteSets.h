// Puts groups of GSV sentences together, one group at a time for each talker and signal.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "kalo/nmea/gsvMsg.h"
#include "kalo/nmea/gsvSet.h"
#include "tools/recordTable.h"

class satelliteSets_t {
public:
    /// Offers a sentence; true when it completed a group, which `out` then holds.
    bool offer(const kalo::gsvMsg_t& view, satelliteSet_t& out);
    /// No more sentences: the groups that are not complete will not become so.
    void finish();

    unsigned long complete() const { return m_complete; }
    /// Groups that a sentence was missing from, or whose counts did not hold.
    unsigned long incomplete() const { return m_incomplete; }

private:
    struct group_t {
        kalo::gsvSet_t set;
        bool open = false; ///< has begun, and is not complete
    };

    std::map<std::string, std::unique_ptr<group_t>> m_groups; // by talker and signal
    unsigned long m_complete = 0;
    unsigned long m_incomplete = 0;
};
