// An output stream over memory of the caller's, which neither grows nor fails when it is full.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <streambuf>

#include "kalo/export.h"

namespace kalo {

/// The stream buffer behind `bufferStream_t`. The memory must outlive it, and is neither cleared
/// nor terminated. What does not fit is dropped and counted.
class KALO_EXPORT bufferStreambuf_t : public std::streambuf {
public:
    bufferStreambuf_t(void* buffer, std::size_t size);
    ~bufferStreambuf_t() override;

    /// Bytes written to the buffer.
    std::size_t written() const;
    /// Characters that did not fit.
    std::uint32_t dropped() const;

protected:
    int overflow(int character) override;

private:
    std::uint32_t m_dropped = 0;
};

/// An output stream that writes to `size` bytes at `buffer`. A full buffer is no error: the state
/// stays good, and what follows is dropped.
class KALO_EXPORT bufferStream_t : public std::ostream {
public:
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
