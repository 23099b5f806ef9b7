#include "tools/input/followedFile.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tools/input/input.h"
#include "tools/terminal/message.h"
#include "tools/terminal/stopSignal.h"

namespace {

constexpr std::size_t blockSize = 65536;

// A record that was appended comes out within 200 ms.
constexpr int pollMilliseconds = 50;

} // namespace

followedFile_t::followedFile_t(std::string name)
    : m_name(std::move(name)), m_buffer(blockSize, '\0') {}

followedFile_t::~followedFile_t() { close(); }

bool followedFile_t::isReady() {
    m_isTruncated = false;
    m_isReplaced = false;
    if (m_error != 0) {
        return true;
    }
    if (m_descriptor < 0 && !open()) {
        return false;
    }
    struct stat file = {};
    if (fstat(m_descriptor, &file) != 0) {
        m_error = errno;
        return true;
    }
    const auto size = static_cast<std::uint64_t>(file.st_size);
    if (size != m_position) {
        m_isTruncated = size < m_position;
        return true;
    }
    struct stat named = {};
    if (isNamed(named)) {
        m_isReplaced = !isSameFile(file, named);
        m_missing.clear();
    }
    return m_isReplaced;
}

void followedFile_t::wait(int output) { waitReadable(-1, output, pollMilliseconds); }

std::string_view followedFile_t::read() {
    while (m_error == 0 && stopSignal() == 0) {
        if (!isReady()) {
            wait(-1);
            continue;
        }
        if (m_isTruncated) {
            complain(m_name, "truncated; it is read from its start again");
            m_position = 0;
            return {};
        }
        const ssize_t count =
            pread(m_descriptor, m_buffer.data(), m_buffer.size(), static_cast<off_t>(m_position));
        if (count > 0) {
            m_position += static_cast<std::uint64_t>(count);
            return {m_buffer.data(), static_cast<std::size_t>(count)};
        }
        if (count == 0 && m_isReplaced) { // its last bytes came after it was renamed, or none did
            complain(m_name, "another file has its name now, and is read from its start");
            close();
            return {};
        }
        if (count < 0 && errno != EINTR) {
            m_error = errno;
        }
        if (count == 0) { // the file has changed since it was looked at
            wait(-1);
        }
    }
    return {};
}

std::string followedFile_t::fault() const { return m_error == 0 ? "" : std::strerror(m_error); }

// What the system says of the regular file with this name. False if there is none at the moment.
bool followedFile_t::isNamed(struct stat& file) {
    if (stat(m_name.c_str(), &file) != 0) {
        waitFor(std::strerror(errno));
        return false;
    }
    if (!S_ISREG(file.st_mode)) {
        waitFor("not a regular file");
        return false;
    }
    return true;
}

bool followedFile_t::open() {
    struct stat named = {};
    if (!isNamed(named)) {
        return false;
    }
    m_descriptor = ::open(m_name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (m_descriptor < 0) {
        waitFor(std::strerror(errno));
        return false;
    }
    m_position = 0;
    m_missing.clear();
    return true;
}

void followedFile_t::close() {
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
        m_descriptor = -1;
    }
}

void followedFile_t::waitFor(const std::string& reason) {
    if (reason != m_missing) {
        complain(m_name, reason + "; it is waited for");
        m_missing = reason;
    }
}
