#pragma once
// The two time zones in which the household lives.

#include "platform/AppleFormat.h"
#include "platform/Stamp.h"

#include <cstdint>
#include <string_view>

/// The time of a place. The household needs no more than these two, and computes both itself: the
/// same days come out on a machine without zone files.
enum class Zone {
  shanghai,  ///< +0800 all year
  newYork,   ///< -0500; -0400 from the second Sunday of March to the first of November
};

/// What the world calls the zone: "Asia/Shanghai".
std::string_view nameOf(Zone zone);

/// `moment` as the clocks of `zone` show it.
Stamp stampIn(Zone zone, std::int64_t moment);

/// The start of `day` in `zone`.
Stamp midnight(Zone zone, CivilDay day);
