#include "tools/output/output.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace {

constexpr std::size_t largeSize = 262144;
constexpr std::chrono::milliseconds longestWait{100};

// A larger pipe makes its two ends wait for each other less often. If the system refuses, or the
// output is not a pipe, nothing changes.
void enlargePipe(int descriptor) {
#if defined(F_SETPIPE_SZ)
    constexpr int pipeSize = 1048576; // what Linux gives every user
    static_cast<void>(fcntl(descriptor, F_SETPIPE_SZ, pipeSize));
#else
    static_cast<void>(descriptor);
#endif
}

} // namespace

output_t::output_t(int descriptor)
    : m_descriptor(descriptor), m_flushed(std::chrono::steady_clock::now()) {
    enlargePipe(descriptor);
}

output_t::output_t(const outputOptions_t& options, const std::vector<std::string>& inputs)
    : output_t(STDOUT_FILENO) {
    if (options.path != "-") {
        m_name = options.path;
        m_reason = m_file.open(options.path, inputs, options.isDirect);
        m_descriptor = m_file.descriptor();
        m_closed = failed();
    }
}

void output_t::flush() {
    if (m_buffer.size() > 0) { // else the reader may have gone
        m_flushed = std::chrono::steady_clock::now();
    }
    for (std::string_view left = m_buffer.text(); !left.empty() && !m_closed;) {
        const ssize_t count = write(m_descriptor, left.data(), left.size());
        if (count >= 0) {
            left.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno == EAGAIN) {
            pollfd output = {m_descriptor, POLLOUT, 0};
            poll(&output, 1, -1);
        } else if (errno != EINTR) {
            fail(errno);
        }
    }
    m_buffer.clear();
    if (m_also) {
        m_also();
    }
}

void output_t::flushIfLarge() {
    if (m_buffer.size() >= largeSize) {
        flush();
    }
}

void output_t::flushIfDue() {
    if (std::chrono::steady_clock::now() - m_flushed >= longestWait) {
        if (m_buffer.size() == 0) { // then no write tells
            checkReader();
            m_flushed = std::chrono::steady_clock::now();
        }
        flush();
    }
}

void output_t::checkReader() {
    pollfd output = {m_descriptor, 0, 0};
    if (!m_closed && poll(&output, 1, 0) > 0 && (output.revents & (POLLERR | POLLHUP)) != 0) {
        fail(EPIPE);
    }
}

void output_t::close(bool isComplete) {
    std::string fault = m_file.close(isComplete && !m_closed);
    if (!fault.empty() && !m_closed) {
        m_reason = std::move(fault);
        m_closed = true;
    }
}

// It is not an error if the reader goes away, as `head` does.
void output_t::fail(int error) {
    m_closed = true;
    m_reason = error == EPIPE ? "" : std::strerror(error);
}
