#pragma once
// The signals that ask the program to stop.

/// SIGINT, SIGTERM and SIGHUP: Ctrl-C, the system's shutdown, a terminal that closes.
namespace StopSignals {

/// From now on such a signal is noted instead of ending the process. A system call that waits when
/// one arrives fails with EINTR. A signal that is ignored already, as under nohup, stays ignored.
void note();

/// Whether one has been noted.
bool noted();

/// Ends the process by the signal that was noted first, for shells look at how a program ended.
/// Destructors do not run.
[[noreturn]] void end();

}  // namespace StopSignals
