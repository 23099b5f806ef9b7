// Runs commands of the tool on an input, in the process.
#pragma once

#include <string>
#include <string_view>

#include <sys/mman.h>
#include <unistd.h>

#include "fuzz/target.h"

namespace fuzz {

/// A file in memory.
class memoryFile_t {
public:
    explicit memoryFile_t(std::string_view text = {}) : m_descriptor(memfd_create("kalo", 0)) {
        require(m_descriptor >= 0 && write(m_descriptor, text.data(), text.size()) ==
                                         static_cast<ssize_t>(text.size()),
                "memory for a file");
    }
    memoryFile_t(const memoryFile_t&) = delete;
    memoryFile_t& operator=(const memoryFile_t&) = delete;
    ~memoryFile_t() { close(m_descriptor); }

    int descriptor() const { return m_descriptor; }
    std::string path() const { return "/proc/self/fd/" + std::to_string(m_descriptor); }

    std::string text() const {
        std::string text(static_cast<std::size_t>(lseek(m_descriptor, 0, SEEK_END)), '\0');
        require(pread(m_descriptor, text.data(), text.size(), 0) ==
                    static_cast<ssize_t>(text.size()),
                "the file can be read");
        return text;
    }

private:
    int m_descriptor;
};

/// What a command prints to standard output.
template <typename Command, typename Options>
std::string printed(Command command, const Options& options) {
    const memoryFile_t output;
    const int before = dup(STDOUT_FILENO);
    dup2(output.descriptor(), STDOUT_FILENO);
    command(options);
    dup2(before, STDOUT_FILENO);
    close(before);
    return output.text();
}

} // namespace fuzz
