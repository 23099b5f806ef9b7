// The command line of kalo.
#include <csignal>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include "kalo/util/portability.h"
#include "tools/command/commandLine.h"
#include "tools/command/readInput.h"
#include "tools/terminal/message.h"

namespace {

// A file that is opened must not get the number of a standard stream that is closed: output would
// go into it.
void occupyStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) < 0) {
            // So that what the stream is for still fails.
            static_cast<void>(open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY));
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    occupyStandardStreams();
    static_cast<void>(kalo::portability::set_stdin_binary());
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN)); // a closed pipe shows when it is written to
    try {
        return runCommandLine({argv + 1, argv + argc});
    } catch (const std::bad_alloc&) {
        sayFault("out of memory");
        return exitFailure;
    } catch (const std::exception& error) {
        sayFault(error.what());
        return exitFailure;
    }
}
