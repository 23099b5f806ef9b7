#include "kalo/util/bufferStream.h"

namespace kalo {

bufferStreambuf_t::bufferStreambuf_t(void* buffer, std::size_t size) {
    char* const begin = static_cast<char*>(buffer);
    setp(begin, begin + size);
}

bufferStreambuf_t::~bufferStreambuf_t() = default;

std::size_t bufferStreambuf_t::written() const {
    return static_cast<std::size_t>(pptr() - pbase());
}

std::uint32_t bufferStreambuf_t::dropped() const { return m_dropped; }

int bufferStreambuf_t::overflow(int /*character*/) {
    ++m_dropped;
    return 0; // any value but the end of file: the stream takes it as written
}

bufferStream_t::bufferStream_t(void* buffer, std::size_t size)
    : std::ostream(nullptr), m_buffer(buffer, size) {
    rdbuf(&m_buffer);
}

bufferStream_t::~bufferStream_t() = default;

std::size_t bufferStream_t::written() const { return m_buffer.written(); }

std::uint32_t bufferStream_t::dropped() const { return m_buffer.dropped(); }

} // namespace kalo
