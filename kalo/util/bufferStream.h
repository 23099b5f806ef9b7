// An output stream into memory of the caller's. The memory does not grow, and a full one is no
// error.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <streambuf>

#include "kalo/export.h"

namespace kalo {

/// The stream buffer of `bufferStream_t`. The memory must outlive it; it is neither cleared nor
/// terminated with a zero. Characters that do not fit are dropped and counted.
class KALO_EXPORT bufferStreambuf_t : public std::streambuf {
public:
    /// Writes to the `size` bytes at `buffer`.
    bufferStreambuf_t(void* buffer, std::size_t size);
    ~bufferStreambuf_t() override;

    /// Bytes written to the buffer.
    std::size_t written() const;
    /// Characters that did not fit.
    std::uint32_t dropped() const;

protected:
    /// Counts a character that does not fit, and drops it.
    int overflow(int character) override;

private:
    std::uint32_t m_dropped = 0;
};

/// An output stream into a buffer. When the buffer is full, the stream stays good, and further
/// characters are dropped. The memory must outlive the stream.
class KALO_EXPORT bufferStream_t : public std::ostream {
public:
    /// Writes to the `size` bytes at `buffer`.
    bufferStream_t(void* buffer, std::size_t size);
    ~bufferStream_t() override;

    /// Bytes written to the buffer.
    std::size_t written() const;
    /// Characters that did not fit.
    std::uint32_t dropped() const;

private:
    bufferStreambuf_t m_buffer;
};

} // namespace kalo
