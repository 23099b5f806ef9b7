#include "tools/input.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "tools/stopSignal.h"

namespace {

constexpr std::size_t blockSize = 65536;

struct magic_t {
    const char* format;
    std::string_view bytes;
};

constexpr magic_t magics[] = {
    {"gzip", {"\x1F\x8B", 2}},        {"bzip2", {"BZh", 3}},
    {"xz", {"\xFD\x37zXZ\0", 6}},     {"zstd", {"\x28\xB5\x2F\xFD", 4}},
    {"lz4", {"\x04\x22\x4D\x18", 4}}, {"zip", {"PK\x03\x04", 4}},
};

} // namespace

input_t::input_t(const std::string& name)
    : m_name(name), m_buffer(blockSize, '\0'), m_descriptor(name == "-" ? STDIN_FILENO : -1) {
    // Opening a pipe waits for the other end, and a signal may come first.
    while (m_descriptor < 0 && m_error == 0 && stopSignal() == 0) {
        m_descriptor = open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
        if (m_descriptor < 0 && errno != EINTR) {
            m_error = errno;
        }
    }
}

input_t::~input_t() {
    if (m_descriptor > STDIN_FILENO) {
        close(m_descriptor);
    }
}

bool input_t::isReady() const {
    pollfd input = {m_descriptor, POLLIN, 0};
    return poll(&input, 1, 0) > 0;
}

void input_t::wait() const { waitReadable(m_descriptor); }

std::string_view input_t::read() {
    while (!failed() && stopSignal() == 0) {
        const ssize_t count = ::read(m_descriptor, m_buffer.data(), m_buffer.size());
        if (count >= 0) {
            return {m_buffer.data(), static_cast<std::size_t>(count)};
        }
        if (errno == EAGAIN) {
            wait();
        } else if (errno != EINTR) {
            m_error = errno;
        }
    }
    return {};
}

std::string input_t::reason() const { return std::strerror(m_error); }

content_t contentOf(std::string_view start, const char*& format) {
    content_t content = content_t::text;
    for (const magic_t& magic : magics) {
        const std::size_t known = std::min(start.size(), magic.bytes.size());
        if (start.substr(0, known) != magic.bytes.substr(0, known)) {
            continue;
        }
        if (known == magic.bytes.size()) {
            format = magic.format;
            return content_t::compressed;
        }
        content = content_t::undecided;
    }
    return content;
}
