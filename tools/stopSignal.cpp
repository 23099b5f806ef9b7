#include "tools/stopSignal.h"

#include <cerrno>
#include <csignal>

#include <poll.h>

namespace {

volatile std::sig_atomic_t caught = 0;

void note(int signal) { caught = signal; }

sigset_t stopSignals() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGTERM);
    return set;
}

} // namespace

void catchStopSignals() {
    struct sigaction action = {};
    action.sa_handler = note;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

int stopSignal() { return caught; }

bool waitReadable(int descriptor) {
    // A signal between the question and the wait would be missed, were it not held back until the
    // wait lets it in.
    const sigset_t stop = stopSignals();
    sigset_t before;
    sigprocmask(SIG_BLOCK, &stop, &before);
    pollfd input = {descriptor, POLLIN, 0};
    while (caught == 0 && ppoll(&input, 1, nullptr, &before) < 0 && errno == EINTR) {
    }
    sigprocmask(SIG_SETMASK, &before, nullptr);
    return caught == 0;
}
