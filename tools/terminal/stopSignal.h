// SIGINT, SIGTERM and SIGHUP end a run cleanly: what was decoded is written out first.
#pragma once

#include <optional>

/// From now on, the first of these signals is only remembered; a second one kills the program. A
/// signal that was ignored at the start, as with `nohup`, stays ignored.
void catchStopSignals();

/// The signal that came, or 0.
int stopSignal();

/// Waits until `input` is readable; returns early if nobody reads `output` any more, or if a stop
/// signal comes, or after the time, if one is given. Either descriptor may be -1.
void waitReadable(int input, int output, std::optional<int> milliseconds = {});
