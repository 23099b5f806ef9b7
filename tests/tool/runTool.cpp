#include "tests/tool/runTool.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

descriptor_t memoryFile() { return descriptor_t(memfd_create("kalo-test", MFD_CLOEXEC)); }

std::string contentOf(const descriptor_t& file) {
    const off_t size = lseek(file.number(), 0, SEEK_END);
    std::string content(static_cast<std::size_t>(size), '\0');
    return pread(file.number(), content.data(), content.size(), 0) == size ? content : "unread";
}

} // namespace

texts_t words(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

descriptor_t::descriptor_t(int number)
    : m_number(new int(number), [](const int* held) {
          close(*held);
          delete held;
      }) {}

bool descriptor_t::write(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t count = ::write(number(), bytes.data(), bytes.size());
        if (count < 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

link_t makePipe() {
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0) {
        throw std::runtime_error("pipe2");
    }
    return {descriptor_t(ends[1]), descriptor_t(ends[0])};
}

link_t makeTerminal() {
    descriptor_t master(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    char name[128];
    if (grantpt(master.number()) != 0 || unlockpt(master.number()) != 0 ||
        ptsname_r(master.number(), name, sizeof name) != 0) {
        return {descriptor_t(), descriptor_t()};
    }
    return {master, descriptor_t(open(name, O_RDWR | O_NOCTTY | O_CLOEXEC))};
}

tool_t::tool_t(const texts_t& arguments, descriptor_t input, descriptor_t output)
    : m_errors(memoryFile()) {
    if (output.number() < 0) {
        const link_t link = makePipe(); // the ends are named for an input
        m_output = link.theirs;
        output = link.ours;
    }
    texts_t texts = arguments;
    std::vector<char*> argv = {const_cast<char*>(KALO_TOOL)};
    for (std::string& text : texts) {
        argv.push_back(text.data());
    }
    argv.push_back(nullptr);
    // This process ignores SIGPIPE; whether the tool does is its own affair.
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    m_process = fork();
    if (m_process == 0) {
        dup2(input.number(), STDIN_FILENO);
        dup2(output.number(), STDOUT_FILENO);
        dup2(m_errors.number(), STDERR_FILENO);
        static_cast<void>(std::signal(SIGPIPE, SIG_DFL));
        setenv("TZ", "XXX-14", 1); // no zone of the machine enters
        execv(argv[0], argv.data());
        _exit(127);
    }
    if (m_process < 0) {
        throw std::runtime_error("the tool does not start: " KALO_TOOL);
    }
}

tool_t::~tool_t() {
    if (m_process > 0) {
        kill(m_process, SIGKILL);
        waitpid(m_process, nullptr, 0);
    }
}

std::string tool_t::readLine(int milliseconds) {
    std::size_t end = 0;
    while ((end = m_pending.find('\n')) == std::string::npos) {
        pollfd output = {m_output.number(), POLLIN, 0};
        char block[4096];
        ssize_t count = 0;
        if (poll(&output, 1, milliseconds) <= 0 ||
            (count = read(m_output.number(), block, sizeof block)) <= 0) {
            return std::exchange(m_pending, {});
        }
        m_pending.append(block, static_cast<std::size_t>(count));
    }
    std::string line = m_pending.substr(0, end + 1);
    m_pending.erase(0, end + 1);
    return line;
}

void tool_t::send(int signal) const { kill(m_process, signal); }

result_t tool_t::wait() {
    result_t result;
    int status = 0;
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (waitpid(m_process, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > end) {
            kill(m_process, SIGKILL);
        }
        result.out += readLine(0);
        usleep(100);
    }
    m_process = -1;
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    for (std::string line; !(line = readLine(0)).empty();) {
        result.out += line;
    }
    result.err = contentOf(m_errors);
    return result;
}

result_t runTool(const texts_t& arguments, std::string_view input, std::size_t chunk) {
    int ends[2] = {-1, -1}; // of a socket that keeps the bounds of what is written to it
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) {
        throw std::runtime_error("socketpair");
    }
    descriptor_t ours(ends[0]);
    const descriptor_t output = memoryFile();
    tool_t tool(arguments, descriptor_t(ends[1]), output);
    for (; !input.empty() && ours.write(input.substr(0, chunk));
         input.remove_prefix(std::min(chunk, input.size()))) {
    }
    ours = descriptor_t();
    result_t ended = tool.wait();
    ended.out = contentOf(output);
    return ended;
}
