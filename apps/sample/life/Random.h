#pragma once
// Chance that is the same everywhere: a household must not depend on the library that rolls the
// dice.

#include <cstdint>
#include <string_view>

/// A stream of numbers that follows from its seed alone. Only integer arithmetic and exact scaling,
/// so every compiler and library draws the same.
class Random {
public:
  explicit Random(std::uint64_t seed) : state(seed) {}

  /// A stream of its own for one subject. Depends on what this stream was made of and on the
  /// subject, not on how much is drawn elsewhere: adding a habit leaves every other habit as it
  /// was.
  Random fork(std::string_view subject) const;
  Random fork(std::uint64_t subject) const;

  double uniform();                         ///< in [0, 1)
  double between(double low, double high);  ///< in [low, high)
  int whole(int low, int high);             ///< in [low, high], both included
  bool chance(double probability);

  /// Around `mean` with standard deviation `spread`, never more than 3.5 spreads away: bodies do
  /// not have the outliers of a true normal distribution.
  double bell(double mean, double spread);

  std::uint64_t next();

private:
  std::uint64_t state;
};
