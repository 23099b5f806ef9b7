// Finds the lines of an NTRIP caster's sourcetable in a receive buffer, and their kinds.
// kalo/ntrip/ntripRecordDecoder.h decodes the lines that are records.
#pragma once

#include "kalo/export.h"

namespace kalo {

/// The kinds of lines, with the text that each starts with.
enum ntripRecordType_t : int {
    ntripRecordServer = 1,     ///< "Server: "
    ntripRecordStream = 2,     ///< "STR;"
    ntripRecordCaster = 3,     ///< "CAS;"
    ntripRecordNetwork = 4,    ///< "NET;"
    ntripRecordEndOfTable = 5, ///< "ENDSOURCETABLE"
    ntripRecordHeader = 6,     ///< the empty line CR LF, "Content-Type: ", "Content-Length: "
    ntripRecordUnknown = 7     ///< any other line, or no complete line yet
};

/// The kind of the first line in the `length` bytes at `data`. Sets `length` to the number of bytes
/// of that line, its line feed included.
///
/// If the bytes hold no line feed, the kind is `ntripRecordUnknown`. Up to 512 bytes `length`
/// becomes 0: call again when more bytes have arrived. More than 512 bytes are one unknown line,
/// and `length` is not changed.
KALO_EXPORT ntripRecordType_t decodeNtripRecordType(const char* data, unsigned& length);

} // namespace kalo
