#include "tools/input/input.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "tools/terminal/stopSignal.h"

namespace {

constexpr std::size_t blockSize = 65536;

} // namespace

bool isRegularFile(const std::string& name) {
    struct stat status = {};
    return readStatus(name, status) && S_ISREG(status.st_mode);
}

bool readStatus(const std::string& name, struct stat& status) {
    return (name == "-" ? fstat(STDIN_FILENO, &status) : stat(name.c_str(), &status)) == 0;
}

bool isSameFile(const struct stat& one, const struct stat& other) {
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

bool isAmong(const struct stat& file, const std::vector<std::string>& inputs) {
    return S_ISREG(file.st_mode) &&
           std::any_of(inputs.begin(), inputs.end(), [&](const std::string& name) {
               struct stat input = {};
               return readStatus(name, input) && isSameFile(file, input);
           });
}

// This way, a pipe that nobody writes to yet opens at once, and the wait for it also watches the
// output. A serial line opens without a carrier.
input_t::input_t(const std::string& name)
    : m_name(name), m_buffer(blockSize, '\0'), m_descriptor(STDIN_FILENO) {
    if (name == "-") {
        return;
    }
    do {
        m_descriptor = open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
        m_error = m_descriptor < 0 ? errno : 0;
    } while (m_error == EINTR && stopSignal() == 0);
}

input_t::~input_t() {
    if (m_descriptor > STDIN_FILENO) {
        close(m_descriptor);
    }
}

bool input_t::isRegular() const {
    struct stat status = {};
    return fstat(m_descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

bool input_t::isSameFile(int descriptor) const {
    struct stat mine = {};
    struct stat other = {};
    return fstat(m_descriptor, &mine) == 0 && fstat(descriptor, &other) == 0 &&
           S_ISREG(mine.st_mode) && ::isSameFile(mine, other);
}

bool input_t::isReady() {
    pollfd input = {m_descriptor, POLLIN, 0};
    return m_error != 0 || poll(&input, 1, 0) > 0;
}

void input_t::wait(int output) { waitReadable(m_descriptor, output); }

std::string_view input_t::read() {
    while (m_error == 0 && stopSignal() == 0) {
        const ssize_t count = ::read(m_descriptor, m_buffer.data(), m_buffer.size());
        if (count >= 0) {
            return {m_buffer.data(), static_cast<std::size_t>(count)};
        }
        if (errno == EAGAIN) {
            wait(-1);
        } else if (errno != EINTR) {
            m_error = errno;
        }
    }
    return {};
}

std::string input_t::fault() const { return m_error == 0 ? "" : std::strerror(m_error); }
