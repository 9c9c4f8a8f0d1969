// The end of the program on SIGINT, SIGTERM and SIGHUP: everything outstanding is written first.
#pragma once

namespace deskphone {

/// Holds the signals back in this thread and those it starts later; call it before any other thread
/// exists. A reader of standard output that goes away is a write error from then on, no signal.
void hold_signals();

/// Starts and ends the thread that waits for a signal. It writes what is outstanding, puts the
/// terminal right, removes temporary files, and ends the program with exit status 128 + signal.
void watch_signals();
void unwatch_signals();

}  // namespace deskphone
