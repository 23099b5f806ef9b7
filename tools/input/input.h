// The bytes of one input: a file, a device, a pipe or standard input.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <sys/stat.h>

#include "tools/input/bytes.h"

/// Whether this input ("-" is standard input) is a regular file.
bool isRegularFile(const std::string& name);

/// What the system says of this input. False, with `errno`, if there is no such input.
bool readStatus(const std::string& name, struct stat& status);

bool isSameFile(const struct stat& one, const struct stat& other);
/// What is said of such an input.
constexpr const char* sameFileText = "the input is also the output; write to another file";

/// Whether `file` is a regular file and is one of these inputs.
bool isAmong(const struct stat& file, const std::vector<std::string>& inputs);

class input_t : public liveBytes_t {
public:
    /// Opens `name` ("-" is standard input). Does not wait for the other end of a pipe: `wait`
    /// does. If it fails, `fault` says why.
    explicit input_t(const std::string& name);
    input_t(const input_t&) = delete;
    input_t& operator=(const input_t&) = delete;
    ~input_t() override;

    bool isRegular() const;
    /// Whether it is the regular file behind another descriptor.
    bool isSameFile(int descriptor) const;

    bool isReady() override;
    void wait(int output) override;
    std::string_view read() override;
    std::string fault() const override;

private:
    std::string m_name;
    std::string m_buffer;
    int m_descriptor;
    int m_error = 0;
};
