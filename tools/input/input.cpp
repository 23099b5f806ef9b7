#include "tools/input/input.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tools/terminal/stopSignal.h"

namespace {

constexpr std::size_t blockSize = 65536;

struct magic_t {
    const char* format;
    std::string_view bytes; ///< "\x01" stands for any digit from 1 to 9
};

// What files of these formats begin with. bzip2: the level of compression, and the start of the
// first block or, of an empty file, of the end. gzip: the one method there is. zip: a member, or
// the end of an empty archive.
constexpr magic_t magics[] = {
    {"gzip", {"\x1F\x8B\x08", 3}},
    {"bzip2", {"BZh\x01\x31\x41\x59\x26\x53\x59", 10}},
    {"bzip2", {"BZh\x01\x17\x72\x45\x38\x50\x90", 10}},
    {"xz", {"\xFD\x37zXZ\0", 6}},
    {"zstd", {"\x28\xB5\x2F\xFD", 4}},
    {"lz4", {"\x04\x22\x4D\x18", 4}},
    {"zip", {"PK\x03\x04", 4}},
    {"zip", {"PK\x05\x06", 4}},
};

bool fits(char c, char mark) { return mark == '\x01' ? c >= '1' && c <= '9' : c == mark; }

} // namespace

// A pipe that nobody writes to yet opens at once this way, and can be waited for together with the
// output; a serial line opens without a carrier.
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

bool input_t::isSameFile(int descriptor) const {
    struct stat mine = {};
    struct stat other = {};
    return fstat(m_descriptor, &mine) == 0 && fstat(descriptor, &other) == 0 &&
           S_ISREG(mine.st_mode) && mine.st_dev == other.st_dev && mine.st_ino == other.st_ino;
}

bool input_t::isReady() const {
    pollfd input = {m_descriptor, POLLIN, 0};
    return poll(&input, 1, 0) > 0;
}

void input_t::wait(int output) const { waitReadable(m_descriptor, output); }

std::string_view input_t::read() {
    while (!failed() && stopSignal() == 0) {
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

std::string input_t::reason() const { return std::strerror(m_error); }

content_t contentOf(std::string_view start, const char*& format) {
    content_t content = content_t::text;
    for (const magic_t& magic : magics) {
        const std::size_t known = std::min(start.size(), magic.bytes.size());
        if (!std::equal(start.begin(), start.begin() + static_cast<std::ptrdiff_t>(known),
                        magic.bytes.begin(), fits)) {
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
