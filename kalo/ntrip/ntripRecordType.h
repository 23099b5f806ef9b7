// The lines of an NTRIP caster's sourcetable, found and told apart in a receive buffer.
// kalo/ntrip/ntripRecordDecoder.h goes on with the lines that are records.
#pragma once

#include "kalo/export.h"

namespace kalo {

enum ntripRecordType_t : int {
    ntripRecordServer = 1,     // "Server: "
    ntripRecordStream = 2,     // "STR;"
    ntripRecordCaster = 3,     // "CAS;"
    ntripRecordNetwork = 4,    // "NET;"
    ntripRecordEndOfTable = 5, // "ENDSOURCETABLE"
    ntripRecordHeader = 6,     // the empty line CR LF, "Content-Type: ", "Content-Length: "
    ntripRecordUnknown = 7     // any other line, or no complete line yet
};

/// The kind of the first line of the `length` bytes at `data`. `length` becomes the number of bytes
/// that the line takes, its line feed included. Without a line feed the answer is
/// `ntripRecordUnknown`, and `length` becomes 0: more bytes are needed; of more than 512 bytes it
/// stays as it is: all of them are one unknown line.
KALO_EXPORT ntripRecordType_t decodeNtripRecordType(const char* data, unsigned& length);

} // namespace kalo
