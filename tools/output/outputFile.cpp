#include "tools/output/outputFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tools/input/input.h"
#include "tools/terminal/stopSignal.h"

namespace {

constexpr mode_t allModes = 07777;

std::string lastReason() { return std::strerror(errno); }

// -1 with `errno` if it cannot be opened. To open a pipe waits for its reader; a stop signal ends
// the wait.
int openForWriting(const std::string& path, int flags) {
    constexpr mode_t readAndWrite = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
    int descriptor = -1;
    do {
        descriptor =
            open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOCTTY | flags, readAndWrite);
    } while (descriptor < 0 && errno == EINTR && stopSignal() == 0);
    return descriptor;
}

// What a symbolic link names in the end, be it there or not.
std::string named(const std::string& path) {
    constexpr int mostLinks = 40; // as the system has it
    std::error_code none;
    std::filesystem::path name = path;
    for (int i = 0; i < mostLinks && std::filesystem::is_symlink(name, none); ++i) {
        name = name.parent_path() / std::filesystem::read_symlink(name, none);
    }
    return name.string();
}

} // namespace

outputFile_t::~outputFile_t() { static_cast<void>(close(false)); }

std::string outputFile_t::open(const std::string& path, const std::vector<std::string>& inputs,
                               bool isDirect) {
    struct stat file = {};
    struct stat standard = {};
    const bool isThere = stat(path.c_str(), &file) == 0;
    if (!isThere && errno != ENOENT) {
        return lastReason();
    }
    if (isThere && isAmong(file, inputs)) {
        return sameFileText;
    }
    if (isThere && fstat(STDOUT_FILENO, &standard) == 0 && isSameFile(file, standard)) {
        m_descriptor = STDOUT_FILENO; // such as /dev/stdout
        return {};
    }
    m_path = named(path);
    if (isDirect || (isThere && !S_ISREG(file.st_mode))) {
        m_descriptor = openForWriting(m_path, 0);
        return begin(inputs);
    }
    m_descriptor = openForWriting(m_path + ".part", O_NOFOLLOW | O_NONBLOCK);
    if (m_descriptor >= 0 && isThere) { // the file that it replaces may be for few to read
        static_cast<void>(fchmod(m_descriptor, file.st_mode & allModes));
    }
    const std::string fault = begin(inputs);
    if (!fault.empty()) { // which may be for what stands in the place of the part
        std::error_code none;
        const bool isOfPart =
            fault != sameFileText &&
            std::filesystem::exists(std::filesystem::symlink_status(m_path + ".part", none));
        return isOfPart ? m_path + ".part: " + fault : fault;
    }
    m_part = m_path + ".part";
    return {};
}

// Empties the file that was opened.
std::string outputFile_t::begin(const std::vector<std::string>& inputs) {
    struct stat file = {};
    const bool isOpen = m_descriptor >= 0 && fstat(m_descriptor, &file) == 0;
    const bool isInput = isOpen && isAmong(file, inputs);
    std::string fault = isInput ? sameFileText : "";
    if (!isOpen || (!isInput && S_ISREG(file.st_mode) && ftruncate(m_descriptor, 0) != 0)) {
        fault = lastReason();
    }
    if (!fault.empty()) {
        static_cast<void>(close(false));
    }
    return fault;
}

std::string outputFile_t::close(bool isComplete) {
    const int descriptor = m_descriptor;
    m_descriptor = -1;
    if (descriptor < 0 || descriptor == STDOUT_FILENO) {
        return {};
    }
    if (::close(descriptor) != 0 && errno != EINTR) { // some file systems write only now
        return lastReason();
    }
    if (isComplete && !m_part.empty()) {
        if (std::rename(m_part.c_str(), m_path.c_str()) != 0) {
            return lastReason();
        }
        m_part.clear();
    }
    return {};
}
