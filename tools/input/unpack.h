// Compressed inputs and archives, which are recognised by their first bytes.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "tools/input/bytes.h"

/// What an input holds.
enum class packing_t { undecided, text, gzip, zstd, xz, bzip2, lz4, zip, tar };

/// Looks at the first bytes of an input. A tar archive is recognised only with `mayBeTar`: it takes
/// more bytes than a live input may have for some time. With `undecided` more bytes are needed.
packing_t contentOf(std::string_view start, bool mayBeTar);

/// The bytes that `packed` holds, which is compressed in this format. They come as early as the
/// format allows; bzip2, lz4 and zstd give them block by block. Memory is what the format asks for:
/// up to 128 MiB for zstd, up to 1 GiB for xz.
std::unique_ptr<bytes_t> unpack(packing_t format, bytes_t& packed);

/// The members of a tar or zip archive, one after another. `read` gives the bytes of the member
/// that `next` went to, and `fault` belongs to that member.
class members_t : public bytes_t {
public:
    /// Goes to the next file. False at the end of the archive, or if it cannot be read further.
    /// `fault` is then the fault of the archive, unless a member has already reported it.
    virtual bool next(std::string& name) = 0;
};

std::unique_ptr<members_t> openArchive(packing_t format, bytes_t& archive);
