#pragma once
// How long locked databases are waited for, where several of them share one patience.

#include <chrono>

/// A time to wait in all, measured by a clock that nobody sets. Only waiting uses it up.
class Patience {
public:
  explicit Patience(std::chrono::milliseconds inAll) : left(inAll) {}

  /// Waits for a moment, longer after more `attempts` up to a tenth of a second; false, at once,
  /// when no patience is left.
  bool wait(int attempts);

private:
  std::chrono::steady_clock::duration left;
};
