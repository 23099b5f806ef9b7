// The times of reception that loggers write beside a record.
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
    bool statesZone = false;   ///< what follows is UTC; else it is in a zone that is not told
    bool isBareNumber = false; ///< ten digits alone, which may be a counter
    kalo::date_t date;         ///< with `hasDate`
    unsigned hour = 0;         ///< with `hasDate`, as are the next four
    unsigned minute = 0;
    unsigned second = 0;
    std::string_view fraction; ///< digits
    double unixTime = 0;       ///< without a zone, taken as UTC

    /// The order that the numbers of the date tell: one over 12 can only be the day.
    dateOrder_t tells = dateOrder_t::unknown;
    // The two readings of a date whose order the stamp does not tell.
    std::optional<kalo::date_t> asDayFirst;
    std::optional<kalo::date_t> asMonthFirst;
};

/// What decides how a stamp is read.
struct stampRules_t {
    dateOrder_t order = dateOrder_t::unknown; ///< what is known of the input's dates
    bool isJson = false;                      ///< in a JSON object items follow a ":", too
    bool takesNumbers = true;                 ///< Unix time and a clock without a date count
};

/// Reads the stamp that begins at `at`, if there is one.
bool readStamp(std::string_view text, std::size_t at, const stampRules_t& rules, stamp_t& out);

/// The first stamp at one of the items of `text`.
bool findStamp(std::string_view text, const stampRules_t& rules, stamp_t& out);

/// Reads a Unix time in seconds, milliseconds, microseconds or nanoseconds that is all of `text`.
bool readUnixStamp(std::string_view text, stamp_t& out);

/// The Unix time of an ISO 8601 text that is all of `text`; without a zone it is taken as UTC.
std::optional<double> isoTime(std::string_view text);

/// A Unix time in ISO 8601 with microseconds and Z.
std::string isoText(double unixTime);

/// Appends the stamp in ISO 8601 with the digits that were sent, and Z where it states its zone; as
/// it was sent where it tells no date.
void appendReceived(std::string& out, const stamp_t& stamp);

/// The stamp, read in the order that has been found for its date, if it has been found.
stamp_t inOrder(const stamp_t& stamp, dateOrder_t order);
