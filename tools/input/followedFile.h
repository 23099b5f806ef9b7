// A file that another program writes to meanwhile, and that may be rotated or truncated.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tools/input/bytes.h"

/// Asks the system again and again, because events of the file system do not tell what other
/// computers do in a network folder. What happens to the file is said on standard error.
class followedFile_t : public liveBytes_t {
public:
    /// The file need not be there yet.
    explicit followedFile_t(std::string name);
    followedFile_t(const followedFile_t&) = delete;
    followedFile_t& operator=(const followedFile_t&) = delete;
    ~followedFile_t() override;

    bool isReady() override;
    /// Waits until the system should be asked again; returns early as its base says.
    void wait(int output) override;
    /// Also empty at the end of a file that was truncated, or in whose place there is another one.
    /// The next bytes are then from the start of the file that has the name now.
    std::string_view read() override;
    std::string fault() const override;

private:
    bool isNamed(struct stat& file);
    bool open();
    void close();
    void waitFor(const std::string& reason);

    std::string m_name;
    std::string m_buffer;
    int m_descriptor = -1;
    std::uint64_t m_position = 0;
    bool m_isTruncated = false;
    bool m_isReplaced = false;
    std::string m_missing; ///< why the name is waited for, as it was said last
    int m_error = 0;
};
