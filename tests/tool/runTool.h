// Runs the kalo program as its users do: with arguments, descriptors and signals.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

using texts_t = std::vector<std::string>;

/// The words of a text with blanks between.
texts_t words(const std::string& text);

/// What a run left behind. `status` is the exit status, or minus the signal that ended the run.
struct result_t {
    int status = 0;
    std::string out;
    std::string err;
};

/// A file descriptor, closed with its last copy; a child inherits it only where it is handed over.
class descriptor_t {
public:
    explicit descriptor_t(int number = -1);
    int number() const { return *m_number; }
    /// False when the reader is gone.
    bool write(std::string_view bytes) const;

private:
    std::shared_ptr<const int> m_number;
};

struct link_t {
    descriptor_t ours;
    descriptor_t theirs;
};
/// A pipe, or a pseudo-terminal, as standard input.
link_t makePipe();
link_t makeTerminal();
/// A bare root has none; a test that wants one says so and is skipped.
#define SKIP_WITHOUT_TERMINALS()                                                                   \
    if (makeTerminal().ours.number() < 0)                                                          \
    GTEST_SKIP() << "SKIPPED: this system has no pseudo-terminals"

/// A program that runs. Without an `output` it writes to a pipe that `readLine` reads.
class tool_t {
public:
    explicit tool_t(const texts_t& arguments, descriptor_t input,
                    descriptor_t output = descriptor_t());
    tool_t(const tool_t&) = delete;
    tool_t& operator=(const tool_t&) = delete;
    ~tool_t();

    /// The next line of the output; without a line end what came until the limit was over.
    std::string readLine(int milliseconds = 5000);
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

/// Runs the tool to its end; each of its reads returns at most `chunk` bytes of the input.
result_t runTool(const texts_t& arguments, std::string_view input = {}, std::size_t chunk = 32768);
