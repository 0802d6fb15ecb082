#pragma once
// Random numbers that are the same on every platform: standard libraries differ.

#include <cstdint>
#include <string_view>

/// A stream of random numbers, determined by its seed. Uses only integer arithmetic and exact
/// scaling, so every compiler and library produces the same numbers.
class Random {
public:
  explicit Random(std::uint64_t seed) : state(seed) {}

  /// A separate stream for one subject. It depends on this stream's seed and on the subject, not on
  /// the number of draws elsewhere. So a new habit does not change any other habit.
  Random fork(std::string_view subject) const;
  Random fork(std::uint64_t subject) const;

  double uniform();                         ///< in [0, 1)
  double between(double low, double high);  ///< in [low, high)
  int whole(int low, int high);             ///< in [low, high], both included
  bool chance(double probability);

  /// A value around `mean` with standard deviation `spread`, at most 3.5 spreads away: body
  /// measurements do not have the outliers of a true normal distribution.
  double bell(double mean, double spread);

  std::uint64_t next();

private:
  std::uint64_t state;
};
