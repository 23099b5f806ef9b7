// SIGINT, SIGTERM and SIGHUP end a run cleanly: what was decoded is written out first.
#pragma once

#include <csignal>
#include <optional>

/// From now on, the first of these signals is only remembered; a second one kills the program. A
/// signal that was ignored at the start, as with `nohup`, stays ignored.
void catchStopSignals();

/// The signal that came, or 0.
int stopSignal();

/// The threads that begin while it lives do not get these signals, so that they interrupt the
/// thread that reads and waits.
class stopSignalsBlocked_t {
public:
    stopSignalsBlocked_t();
    stopSignalsBlocked_t(const stopSignalsBlocked_t&) = delete;
    stopSignalsBlocked_t& operator=(const stopSignalsBlocked_t&) = delete;
    ~stopSignalsBlocked_t();

    /// Those that were blocked before.
    const sigset_t& before() const { return m_before; }

private:
    sigset_t m_before = {};
};

/// Waits until `input` is readable; returns early if nobody reads `output` any more, or if a stop
/// signal comes, or after the time, if one is given. Either descriptor may be -1.
void waitReadable(int input, int output, std::optional<int> milliseconds = {});
