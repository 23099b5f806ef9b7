#include "tests/tool/runTool.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using ticks_t = std::chrono::steady_clock;

int checked(int result, const char* what) {
    if (result < 0) {
        throw std::runtime_error(what);
    }
    return result;
}

descriptor_t memoryFile(std::string_view content = {}) {
    descriptor_t file(checked(memfd_create("kalo-test", MFD_CLOEXEC), "memfd_create"));
    writeAll(file, content);
    lseek(file.number(), 0, SEEK_SET);
    return file;
}

std::string contentOf(const descriptor_t& file) {
    std::string content;
    char block[65536];
    ssize_t count = 0;
    while ((count = pread(file.number(), block, sizeof block, static_cast<off_t>(content.size()))) >
           0) {
        content.append(block, static_cast<std::size_t>(count));
    }
    return content;
}

} // namespace

descriptor_t::descriptor_t(descriptor_t&& other) noexcept
    : m_number(std::exchange(other.m_number, -1)) {}

descriptor_t& descriptor_t::operator=(descriptor_t&& other) noexcept {
    const descriptor_t old(std::exchange(m_number, std::exchange(other.m_number, -1)));
    return *this;
}

descriptor_t::~descriptor_t() {
    if (m_number >= 0) {
        close(m_number);
    }
}

tool_t::tool_t(const std::vector<std::string>& arguments, descriptor_t input, descriptor_t output)
    : m_errors(memoryFile()) {
    if (output.number() < 0) {
        link_t link = makePipe();
        m_output = std::move(link.theirs); // the ends are named for an input
        output = std::move(link.ours);
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input.number(), STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output.number(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, m_errors.number(), STDERR_FILENO);
    // This process ignores SIGPIPE; whether the tool does is its own affair.
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    sigset_t pipeSignal;
    sigemptyset(&pipeSignal);
    sigaddset(&pipeSignal, SIGPIPE);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setsigdefault(&attributes, &pipeSignal);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);

    std::vector<std::string> words = arguments;
    words.insert(words.begin(), KALO_TOOL);
    std::vector<char*> argv;
    argv.reserve(words.size() + 1);
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    const int error =
        posix_spawn(&m_process, KALO_TOOL, &actions, &attributes, argv.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    checked(-error, "the tool does not start: " KALO_TOOL);
}

tool_t::~tool_t() {
    if (m_process > 0) {
        kill(m_process, SIGKILL);
        waitpid(m_process, nullptr, 0);
    }
}

std::string tool_t::readLine(std::chrono::milliseconds limit) {
    const auto end = ticks_t::now() + limit;
    std::size_t length = 0;
    while ((length = m_pending.find('\n')) == std::string::npos) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - ticks_t::now());
        pollfd output = {m_output.number(), POLLIN, 0};
        char block[4096];
        ssize_t count = 0;
        if (left.count() < 0 || poll(&output, 1, static_cast<int>(left.count())) <= 0 ||
            (count = read(m_output.number(), block, sizeof block)) <= 0) {
            return std::exchange(m_pending, {});
        }
        m_pending.append(block, static_cast<std::size_t>(count));
    }
    std::string line = m_pending.substr(0, length + 1);
    m_pending.erase(0, length + 1);
    return line;
}

void tool_t::send(int signal) const { kill(m_process, signal); }

result_t tool_t::wait() {
    const auto end = ticks_t::now() + std::chrono::minutes(1);
    result_t result;
    int status = 0;
    while (waitpid(m_process, &status, WNOHANG) == 0) {
        if (ticks_t::now() > end) {
            kill(m_process, SIGKILL);
        }
        if (m_output.number() >= 0) {
            result.out += readLine(std::chrono::milliseconds(1));
        }
        std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
    m_process = -1;
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    for (std::string line; m_output.number() >= 0 && !(line = readLine()).empty();) {
        result.out += line;
    }
    result.err = contentOf(m_errors);
    return result;
}

link_t makePipe() {
    int ends[2];
    checked(pipe2(ends, O_CLOEXEC), "pipe2");
    return {descriptor_t(ends[1]), descriptor_t(ends[0])};
}

link_t makeTerminal() {
    descriptor_t master(checked(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC), "posix_openpt"));
    char name[128];
    checked(grantpt(master.number()), "grantpt");
    checked(unlockpt(master.number()), "unlockpt");
    checked(-ptsname_r(master.number(), name, sizeof name), "ptsname_r");
    return {std::move(master),
            descriptor_t(checked(open(name, O_RDWR | O_NOCTTY | O_CLOEXEC), "open"))};
}

bool hasTerminals() {
    try {
        makeTerminal();
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

bool writeAll(const descriptor_t& to, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(to.number(), bytes.data(), bytes.size());
        if (count < 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

result_t runTool(const std::vector<std::string>& arguments, std::string_view input,
                 std::size_t chunk) {
    descriptor_t output = memoryFile();
    descriptor_t ours;
    descriptor_t theirs;
    if (chunk == 0) {
        theirs = memoryFile(input);
    } else { // a socket that keeps the bounds of what is written to it
        int ends[2];
        checked(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends), "socketpair");
        ours = descriptor_t(ends[0]);
        theirs = descriptor_t(ends[1]);
    }
    const descriptor_t result(fcntl(output.number(), F_DUPFD_CLOEXEC, 0));
    tool_t tool(arguments, std::move(theirs), std::move(output));
    for (; ours.number() >= 0 && !input.empty();
         input.remove_prefix(std::min(chunk, input.size()))) {
        if (!writeAll(ours, input.substr(0, chunk))) {
            break;
        }
    }
    ours = descriptor_t();
    result_t ended = tool.wait();
    ended.out = contentOf(result);
    return ended;
}
