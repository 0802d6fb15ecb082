#pragma once
// What is not as it should be in an export, and does not keep it from being read.

#include <cstdint>

/// Counts.
struct Irregularities {
  std::int64_t unreadableStamps = 0;  ///< of records and workouts, with a day but no readable time
  std::int64_t repeatedAttributes = 0;  ///< that stood in their tag before; see RepeatedAttributes
  std::int64_t droppedCharacters = 0;   ///< that XML forbids, and references to them
  std::int64_t replacedSequences = 0;   ///< ill-formed pieces of UTF-8, replaced by U+FFFD

  bool operator==(const Irregularities&) const = default;
};
