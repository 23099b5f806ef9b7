// Receive stamps: the times of reception that loggers write beside a record.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "kalo/time/dateTime.h"

/// Which number of a date such as 03/04/2026 is the day.
enum class dateOrder_t { unknown, dayFirst, monthFirst };

/// A time of reception. Its texts are parts of the line.
struct stamp_t {
    std::string_view text;     ///< as it was sent
    bool hasDate = false;      ///< false for a clock, and for a date whose order is not known
    bool statesZone = false;   ///< the members below are UTC; otherwise in an unknown zone
    bool isBareNumber = false; ///< only ten digits, which may be a counter
    kalo::date_t date;         ///< with `hasDate`
    unsigned hour = 0;         ///< with `hasDate`, like the next four members
    unsigned minute = 0;
    unsigned second = 0;
    std::string_view fraction; ///< digits
    double unixTime = 0;       ///< taken as UTC if there is no zone

    /// The order that follows from the date itself: a number over 12 can only be the day.
    dateOrder_t tells = dateOrder_t::unknown;
    // The two possible dates, if the stamp does not tell the order.
    std::optional<kalo::date_t> asDayFirst;
    std::optional<kalo::date_t> asMonthFirst;
};

/// What decides how a stamp is read.
struct stampRules_t {
    dateOrder_t order = dateOrder_t::unknown; ///< what is known of the input's dates
    bool isJson = false;                      ///< in a JSON object, items may also follow a ":"
    bool takesNumbers = true;                 ///< Unix times and clocks without a date are accepted
};

/// Reads the stamp that begins at `at`, if there is one.
bool readStamp(std::string_view text, std::size_t at, const stampRules_t& rules, stamp_t& out);

/// The first stamp at one of the items of `text`.
bool findStamp(std::string_view text, const stampRules_t& rules, stamp_t& out);

/// Reads a Unix time in seconds, milliseconds, microseconds or nanoseconds. It must be the whole of
/// `text`.
bool readUnixStamp(std::string_view text, stamp_t& out);

/// The Unix time of `text`, which must be ISO 8601 as a whole; taken as UTC if it has no zone.
std::optional<double> isoTime(std::string_view text);

/// A Unix time in ISO 8601 with microseconds and Z.
std::string isoText(double unixTime);

/// Appends the stamp in ISO 8601 with the digits that were sent, and with Z if it states its zone.
/// A stamp without a date is appended as it was sent.
void appendReceived(std::string& out, const stamp_t& stamp);

/// The stamp with its date read in this order, if the order is known.
stamp_t inOrder(const stamp_t& stamp, dateOrder_t order);
