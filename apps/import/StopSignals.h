#pragma once
// The signals that ask the program to stop.

/// SIGINT, SIGTERM and SIGHUP: Ctrl-C, the system's shutdown, a closed terminal.
namespace StopSignals {

/// From now on such a signal is recorded instead of ending the process. A blocking system call then
/// fails with EINTR. A signal that is already ignored, as under nohup, stays ignored.
void note();

/// Whether a signal was recorded.
bool noted();

/// Ends the process by the first recorded signal, because shells check how a program ended.
/// Destructors do not run.
[[noreturn]] void end();

}  // namespace StopSignals
