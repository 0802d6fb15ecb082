#pragma once
// The cost of work: processor time and elapsed time.

#include <chrono>
#include <ctime>

/// Both in seconds. The processor time includes the system's time for the program.
struct Cost {
  double processor = 0;
  double elapsed = 0;

  Cost& operator+=(const Cost& more) {
    processor += more.processor;
    elapsed += more.elapsed;
    return *this;
  }
};

/// Measures the cost of this process since the construction of the meter.
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
