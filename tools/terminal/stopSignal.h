// SIGINT, SIGTERM and SIGHUP end a run in order: what was decoded is written out first.
#pragma once

/// From here on these signals are only noted; a second one kills the program. One that was ignored
/// when the program started, as by `nohup`, stays ignored.
void catchStopSignals();

/// The signal that came, or 0.
int stopSignal();

/// Waits until `input` is readable; returns early when nobody reads `output` any more, or when a
/// stop signal comes. Either descriptor may be -1.
void waitReadable(int input, int output);
