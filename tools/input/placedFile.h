// A regular file that is read at any place.
#pragma once

#include <string>

#include <sys/stat.h>

#include "tools/input/bytes.h"

class placedFile_t : public placedBytes_t {
public:
    /// Opens `name`. If it cannot be opened or is no regular file, `fault` says so.
    explicit placedFile_t(const std::string& name);
    placedFile_t(const placedFile_t&) = delete;
    placedFile_t& operator=(const placedFile_t&) = delete;
    ~placedFile_t() override;

    const struct stat& status() const { return m_status; }

    /// The size that the file had when it was opened. It ends there, even if it grows.
    std::uint64_t size() const override { return static_cast<std::uint64_t>(m_status.st_size); }
    std::size_t readAt(std::uint64_t offset, char* out, std::size_t size) override;
    std::string fault() const override { return m_fault; }

private:
    int m_descriptor;
    struct stat m_status = {};
    std::string m_fault;
};
