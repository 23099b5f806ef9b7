// The bytes of one input: a file, a device, a pipe or standard input.
#pragma once

#include <string>
#include <string_view>

class input_t {
public:
    /// Opens `name`, "-" being standard input. Does not wait for the other end of a pipe: `wait`
    /// does. See `failed`.
    explicit input_t(const std::string& name);
    input_t(const input_t&) = delete;
    input_t& operator=(const input_t&) = delete;
    ~input_t();

    const std::string& name() const { return m_name; }

    /// Whether it is the regular file behind another descriptor.
    bool isSameFile(int descriptor) const;

    /// Whether a `read` would return at once.
    bool isReady() const;
    /// Waits for that; returns early when nobody reads `output` any more, or at a stop signal.
    void wait(int output) const;
    /// What can be had now, at least one byte, waiting for it if need be; empty at the end, after a
    /// failure, and when a stop signal came. The bytes live until the next `read`.
    std::string_view read();

    bool failed() const { return m_error != 0; }
    /// Why it failed, for people.
    std::string reason() const;

private:
    std::string m_name;
    std::string m_buffer;
    int m_descriptor;
    int m_error = 0;
};

/// What the first bytes of an input tell about it.
enum class content_t { undecided, text, compressed };

/// Looks at the first bytes of an input. `format` gets the name of a compressed format.
content_t contentOf(std::string_view start, const char*& format);
