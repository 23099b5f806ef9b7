// Finds the day of a time of day.
#pragma once

#include <cstdint>
#include <optional>

#include "tools/time/sentTime.h"

/// How an instant got its day.
enum class dayRule_t {
    own,     ///< the record's own date
    near,    ///< nearest to the reference
    stamp,   ///< nearest to the line's stamp
    option,  ///< nearest to the day or instant that the user gives
    isVoid,  ///< the date of a void record
    rollover ///< the record's own date, moved forward by a multiple of 1024 weeks
};

/// A UTC instant with the digits of its seconds.
struct instant_t {
    kalo::date_t date;
    sentTime_t time;
    double timestamp = 0; ///< Unix seconds
    dayRule_t rule = dayRule_t::own;
};

/// What the user states about the time of an input.
struct datingOptions_t {
    std::optional<kalo::date_t> date;      ///< the day on which it begins
    std::optional<double> begin;           ///< the instant at which it begins, in Unix seconds
    std::optional<kalo::date_t> notBefore; ///< dates before this day are wrong by 1024 weeks
};

/// All that the dating of a record takes from the records before it.
struct datingState_t {
    bool isDated = false; ///< by the user, or by a record with a date of its own
    std::optional<double> reference;
    bool isFromOption = false;            ///< the reference
    std::optional<double> referenceStamp; ///< of the line that gave the reference
};

bool operator==(const datingState_t& a, const datingState_t& b);

/// Finds the day for each time of day of one input, by a reference instant. A record with a date of
/// its own sets the reference. A time without a date lies on the day that brings it nearest to the
/// reference, and becomes the new reference.
///
/// The dates of a GPS receiver past its week rollover are early by 1024 weeks or a multiple. If the
/// stamp of the line shows this, or the user says so, dates move forward.
class dating_t {
public:
    explicit dating_t(const datingOptions_t& options);

    /// Dates what follows as if the records that led to `state` had come before it.
    void startFrom(const datingState_t& state) { m_state = state; }
    const datingState_t& state() const { return m_state; }

    /// The instant of a record. Empty as long as no date is known, and for a record with a time out
    /// of range, with a date beyond the last year, or without a time (its date still moves the
    /// reference).
    std::optional<instant_t> date(const timeClue_t& clue);

    /// The place in time of the last record, if any is known.
    const std::optional<double>& reference() const { return m_state.reference; }

    /// How many records had a time in range while no date was known.
    std::uint64_t undated() const { return m_undated; }
    /// How many records had a date more than a day from the stamp of their line.
    std::uint64_t farFromStamp() const { return m_farFromStamp; }
    /// How many of those were off by a multiple of 1024 weeks.
    std::uint64_t rolledOver() const { return m_rolledOver; }

private:
    std::optional<instant_t> dateByOwn(const timeClue_t& clue, bool hasTime);
    dayRule_t follow(const timeClue_t& clue, bool hasTime);
    void turnToRollover(const timeClue_t& clue, double secondOfDay);
    void setDay(const timeClue_t& clue);
    void setReference(double place, const timeClue_t& clue);
    double nearest(const kalo::timeOfDay_t& time, double reference);
    void turnTo(double timestamp);
    void turnTo(const kalo::date_t& date);

    datingOptions_t m_options;
    datingState_t m_state;
    kalo::date_t m_day{1970, 1, 1}; // the day that was used last
    double m_dayBegin = 0;
    std::uint64_t m_undated = 0;
    std::uint64_t m_farFromStamp = 0;
    std::uint64_t m_rolledOver = 0;
};
