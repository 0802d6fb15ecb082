#pragma once
// Irregularities in an export that do not prevent reading it.

#include <cstdint>

/// Counts.
struct Irregularities {
  std::int64_t unreadableStamps = 0;  ///< of records and workouts; with a day but no readable time
  std::int64_t repeatedAttributes = 0;  ///< repeated within their tag; see RepeatedAttributes
  std::int64_t droppedCharacters = 0;   ///< characters that XML forbids, and references to them
  std::int64_t replacedSequences = 0;   ///< ill-formed UTF-8 sequences, replaced by U+FFFD

  bool operator==(const Irregularities&) const = default;
};
