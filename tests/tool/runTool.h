// Runs the kalo program as its users do: with arguments, descriptors and signals.
#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

/// What a run left behind. `status` is the exit status, or minus the signal that ended the run.
struct result_t {
    int status = 0;
    std::string out;
    std::string err;
};

/// Owns a file descriptor; a child inherits it only where it is handed over.
class descriptor_t {
public:
    explicit descriptor_t(int number = -1) : m_number(number) {}
    descriptor_t(descriptor_t&& other) noexcept;
    descriptor_t& operator=(descriptor_t&& other) noexcept;
    ~descriptor_t();

    int number() const { return m_number; }

private:
    int m_number;
};

/// A program that runs. What it writes to standard output goes to `output`, or where that is not
/// given to a pipe that `readLine` reads.
class tool_t {
public:
    explicit tool_t(const std::vector<std::string>& arguments, descriptor_t input,
                    descriptor_t output = descriptor_t());
    tool_t(const tool_t&) = delete;
    tool_t& operator=(const tool_t&) = delete;
    ~tool_t();

    /// The next line of the output; without a line end what came until `limit` was over.
    std::string readLine(std::chrono::milliseconds limit = std::chrono::seconds(1));
    void closeOutput() { m_output = descriptor_t(); }
    void send(int signal) const;
    /// Waits for the end; `out` is what was left of the pipe. A run that hangs is killed.
    result_t wait();

private:
    pid_t m_process = -1;
    descriptor_t m_output;
    descriptor_t m_errors;
    std::string m_pending; // read and not yet handed out
};

struct link_t {
    descriptor_t ours;
    descriptor_t theirs;
};
/// A pipe, or a pseudo-terminal, as standard input.
link_t makePipe();
link_t makeTerminal();
/// A bare root has none; a test that wants one says so and is skipped.
bool hasTerminals();
#define SKIP_WITHOUT_TERMINALS()                                                                   \
    if (!hasTerminals())                                                                           \
    GTEST_SKIP() << "SKIPPED: this system has no pseudo-terminals"

/// False when the reader is gone.
bool writeAll(const descriptor_t& to, std::string_view bytes);

/// Runs the tool to its end. With a `chunk` each read of the tool returns at most so many bytes.
result_t runTool(const std::vector<std::string>& arguments, std::string_view input = {},
                 std::size_t chunk = 0);
