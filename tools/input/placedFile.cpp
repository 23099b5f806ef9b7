#include "tools/input/placedFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

placedFile_t::placedFile_t(const std::string& name)
    : m_descriptor(open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK)) {
    if (m_descriptor < 0 || fstat(m_descriptor, &m_status) != 0) {
        m_fault = std::strerror(errno);
    } else if (!S_ISREG(m_status.st_mode)) {
        m_fault = "not a regular file";
    }
}

placedFile_t::~placedFile_t() {
    if (m_descriptor >= 0) {
        close(m_descriptor);
    }
}

std::size_t placedFile_t::readAt(std::uint64_t offset, char* out, std::size_t size) {
    std::size_t done = 0;
    const std::size_t wanted = static_cast<std::size_t>(
        std::min<std::uint64_t>(size, this->size() - std::min(offset, this->size())));
    while (done < wanted && m_fault.empty()) {
        const ssize_t count =
            pread(m_descriptor, out + done, wanted - done, static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            m_fault = std::strerror(errno);
        } else if (count == 0) {
            m_fault = "the file was truncated while it was read";
        } else {
            done += static_cast<std::size_t>(count);
        }
    }
    return done;
}
