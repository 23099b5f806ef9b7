// Recognises records that are not NMEA 0183 sentences.
#pragma once

#include <cstddef>
#include <string_view>

#include "kalo/sensors/atsAsciiMsg.h"

/// A TSS1 record has this many columns; what follows them is not part of it.
constexpr std::size_t motionLength = 25;

/// Where the next record begins in the text of a TSS1 record: after its columns, if the columns of
/// a whole record follow. The size of `text` if there is none.
std::size_t nextMotion(std::string_view text);

/// Four tokens that read as a date and a time of day, and a later token with a ":". With
/// `needsTag`, the value of a known tag must be there, too.
bool isTracking(std::string_view text, bool needsTag);

/// Whether the record has a value for a known tag.
bool holdsTag(const kalo::atsAsciiMsg_t& tracking);

/// Where the next record begins in the text of an ATS record; the size of `text` if there is none.
std::size_t nextTracking(std::string_view text);

enum class tableLine_t {
    none,
    record, ///< STR, CAS or NET
    status, ///< the first line of a caster's answer
    header, ///< "Name: value", which counts only between the status line and the first record
    end
};

tableLine_t tableLineOf(std::string_view text);
