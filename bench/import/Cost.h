#pragma once
// What work costs: the processor's time, and the time that passes.

#include <chrono>
#include <ctime>

/// Both in seconds. The processor's time is the program's and the system's on its behalf.
struct Cost {
  double processor = 0;
  double elapsed = 0;

  Cost& operator+=(const Cost& more) {
    processor += more.processor;
    elapsed += more.elapsed;
    return *this;
  }
};

/// Measures what this process spends from the meter's making on.
class CostMeter {
public:
  Cost taken() const {
    return {.processor = processorNow() - processorBefore,
            .elapsed = std::chrono::duration<double>(Clock::now() - began).count()};
  }

private:
  using Clock = std::chrono::steady_clock;

  static double processorNow() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
  }

  Clock::time_point began = Clock::now();
  double processorBefore = processorNow();
};
