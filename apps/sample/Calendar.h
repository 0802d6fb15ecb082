#pragma once
// Moments with their zone, and the two zones in which the household lives.

#include "platform/AppleFormat.h"

#include <array>
#include <cstdint>
#include <string_view>

/// A moment as a phone wrote it down: what it was, and how far the clocks there were from UTC.
struct Stamp {
  std::int64_t moment = 0;  ///< seconds since 1970-01-01 00:00 UTC
  int offset = 0;           ///< seconds east of UTC

  /// The same place later on. Keeps the offset, as a phone does for one record.
  Stamp after(std::int64_t seconds) const { return {moment + seconds, offset}; }

  bool operator==(const Stamp&) const = default;
};

/// The text of a stamp, "2024-03-01 06:54:32 +0800", without an allocation: a large history has
/// tens of millions of them. For the years 1 to 9999.
class StampText {
public:
  explicit StampText(Stamp stamp);

  std::string_view text() const { return {letters.data(), letters.size()}; }
  std::string_view day() const { return text().substr(0, 10); }

private:
  std::array<char, 25> letters;
};

/// The time of a place. The household needs no more than these two, and computes both itself: the
/// same days come out on a machine without zone files.
enum class Zone {
  shanghai,  ///< +0800 all year
  newYork,   ///< -0500; -0400 from the second Sunday of March to the first of November
};

/// `moment` as the clocks of `zone` show it.
Stamp stampIn(Zone zone, std::int64_t moment);

/// The start of `day` in `zone`.
Stamp midnight(Zone zone, CivilDay day);
