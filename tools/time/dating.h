// Which day a time of day belongs to.
#pragma once

#include <cstdint>
#include <optional>

#include "tools/time/sentTime.h"

/// A UTC instant with the digits of its seconds.
struct instant_t {
    kalo::date_t date;
    sentTime_t time;
    double timestamp = 0; ///< Unix seconds
};

/// Dates the times of day of one input by a reference instant, which follows the records: a record
/// with a date of its own sets it, a time without a date lies on the day that brings it nearest.
class dating_t {
public:
    /// `date` is the day on which the user says that the input begins.
    explicit dating_t(const std::optional<kalo::date_t>& date);

    /// The instant of a record. None while no date is known, for a time that is out of range, and
    /// for a record without a time, whose date the reference follows all the same.
    std::optional<instant_t> date(const timeClue_t& clue);

    /// How many records had a time in range while no date was known.
    std::uint64_t undated() const { return m_undated; }

private:
    void follow(const timeClue_t& clue);
    void setDay(const kalo::date_t& date, const timeClue_t& clue);
    void setReference(double timestamp, const timeClue_t& clue);
    std::optional<instant_t> nearest(const sentTime_t& time);
    double noon() const;
    void turnTo(double timestamp);
    void turnTo(const kalo::date_t& date);

    bool m_isDated; // by the user, or by a record with a date of its own
    std::optional<double> m_reference;
    std::optional<double> m_referenceStamp; // of the line that gave the reference
    kalo::date_t m_day{1970, 1, 1};         // the day that was last spoken of
    double m_dayBegin = 0;
    std::uint64_t m_undated = 0;
};
