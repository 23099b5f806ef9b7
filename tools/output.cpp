#include "tools/output.h"

#include <cerrno>
#include <cstring>

#include <poll.h>
#include <unistd.h>

namespace {

constexpr std::size_t largeSize = 65536;
constexpr std::chrono::milliseconds longestWait{100};

} // namespace

output_t::output_t(int descriptor)
    : m_descriptor(descriptor), m_flushed(std::chrono::steady_clock::now()) {}

void output_t::flush() {
    m_flushed = std::chrono::steady_clock::now();
    const char* data = m_buffer.data();
    std::size_t left = m_buffer.size();
    while (left > 0 && !m_closed) {
        const ssize_t count = write(m_descriptor, data, left);
        if (count >= 0) {
            data += count;
            left -= static_cast<std::size_t>(count);
        } else if (errno == EAGAIN) {
            pollfd output = {m_descriptor, POLLOUT, 0};
            poll(&output, 1, -1);
        } else if (errno != EINTR) {
            m_closed = true;
            m_error = errno == EPIPE ? 0 : errno;
        }
    }
    m_buffer.clear();
}

void output_t::flushIfLarge() {
    if (m_buffer.size() >= largeSize) {
        flush();
    }
}

void output_t::flushIfDue() {
    if (std::chrono::steady_clock::now() - m_flushed >= longestWait) {
        flush();
    }
}

std::string output_t::reason() const { return std::strerror(m_error); }
