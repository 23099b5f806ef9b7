// Which day a time of day belongs to.
#pragma once

#include <optional>
#include <string_view>

#include "kalo/time/timeContext.h"
#include "tools/recordTable.h"

/// A UTC instant with the text of its seconds.
struct instant_t {
    kalo::date_t date;
    sentTime_t time;
    double timestamp = 0; ///< Unix seconds
};

/// What one record tells about time.
struct timeClue_t {
    sentTime_t time;
    std::optional<kalo::date_t> date; ///< its own
    bool isVoid = false;              ///< the receiver does not vouch for it
    std::optional<double> stamp;      ///< Unix time of the line's stamp
};

/// Dates the times of day of one input by a reference instant, which follows the records: a record
/// with a date of its own sets it, one without lies on the day that brings it nearest.
class dating_t {
public:
    /// `date` is what the user says about the input.
    explicit dating_t(const std::optional<kalo::date_t>& date);

    /// The instant of a record; nothing while no date is known, or when the time is out of range.
    std::optional<instant_t> date(const timeClue_t& clue);

    /// Records that had a time in range and no date.
    unsigned long undated() const { return m_undated; }

private:
    bool findReference(const timeClue_t& clue);
    instant_t nearest(const sentTime_t& time);
    instant_t onDay(const kalo::date_t& date, const sentTime_t& time);

    kalo::timeContext_t m_context;
    bool m_hasUserDate;
    bool m_dated = false; // by a record with a date of its own
    std::optional<double> m_reference;
    std::optional<double> m_referenceStamp; // of the line that gave the reference
    unsigned long m_undated = 0;
};
