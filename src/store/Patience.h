#pragma once
// A total waiting time for locked databases, shared by several connections.

#include <chrono>

/// A total time to wait, measured by the monotonic clock. Only waiting uses it up.
class Patience {
public:
  explicit Patience(std::chrono::milliseconds inAll) : left(inAll) {}

  /// Pauses; the pause grows with `attempts` up to a tenth of a second. Returns false immediately
  /// when no time is left.
  bool wait(int attempts);

private:
  std::chrono::steady_clock::duration left;
};
