#include "tools/terminal/stopSignal.h"

#include <cerrno>
#include <csignal>

#include <poll.h>

namespace {

constexpr int stopSignals[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t caught = 0;

void note(int signal) { caught = signal; }

} // namespace

void catchStopSignals() {
    struct sigaction action = {};
    action.sa_handler = note;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int signal : stopSignals) {
        struct sigaction before = {};
        sigaction(signal, nullptr, &before);
        if (before.sa_handler != SIG_IGN) {
            sigaction(signal, &action, nullptr);
        }
    }
}

int stopSignal() { return caught; }

stopSignalsBlocked_t::stopSignalsBlocked_t() {
    sigset_t stop;
    sigemptyset(&stop);
    for (const int signal : stopSignals) {
        sigaddset(&stop, signal);
    }
    pthread_sigmask(SIG_BLOCK, &stop, &m_before);
}

stopSignalsBlocked_t::~stopSignalsBlocked_t() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }

void waitReadable(int input, int output, std::optional<int> milliseconds) {
    // The signals are blocked until the wait begins; otherwise one that comes just before the wait
    // would be missed.
    const stopSignalsBlocked_t blocked;
    // No events are requested for the output: that its reader has gone is always reported.
    pollfd descriptors[] = {{input, POLLIN, 0}, {output, 0, 0}};
    constexpr long nanosecondsPerMillisecond = 1000000;
    const int given = milliseconds.value_or(0);
    const timespec most = {given / 1000, given % 1000 * nanosecondsPerMillisecond};
    while (caught == 0 &&
           ppoll(descriptors, 2, milliseconds ? &most : nullptr, &blocked.before()) < 0 &&
           errno == EINTR) {
    }
}
