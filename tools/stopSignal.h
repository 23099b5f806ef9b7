// SIGINT and SIGTERM end a run in order: what was decoded is written out first.
#pragma once

/// From here on the two signals are only noted; a second one kills the program.
void catchStopSignals();

/// The signal that came, or 0.
int stopSignal();

/// Waits until `descriptor` is readable; false when a stop signal came first.
bool waitReadable(int descriptor);
