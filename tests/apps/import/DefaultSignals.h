#pragma once
// Signals as a program finds them that was started from a terminal.

#include <array>
#include <csignal>
#include <cstddef>

/// The signals' default actions, for the programs started meanwhile: a shell has SIGINT ignored in
/// whatever it starts in the background.
class DefaultSignals {
public:
  DefaultSignals() {
    for (std::size_t index = 0; index < numbers.size(); ++index) {
      before[index] = signal(numbers[index], SIG_DFL);
    }
  }
  ~DefaultSignals() {
    for (std::size_t index = 0; index < numbers.size(); ++index) {
      signal(numbers[index], before[index]);
    }
  }
  DefaultSignals(const DefaultSignals&) = delete;
  DefaultSignals& operator=(const DefaultSignals&) = delete;

private:
  static constexpr std::array numbers{SIGINT, SIGTERM, SIGHUP};
  std::array<void (*)(int), numbers.size()> before{};
};
