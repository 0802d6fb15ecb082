#pragma once
// The two time zones of the household.

#include "platform/AppleFormat.h"
#include "platform/Stamp.h"

#include <cstdint>
#include <string_view>

/// A time zone. The program computes the only two itself, so that a machine without zone files
/// produces the same days.
enum class Zone {
  shanghai,  ///< +0800 all year
  newYork,   ///< -0500; -0400 from the second Sunday of March to the first of November
};

/// The zone's common name: "Asia/Shanghai".
std::string_view nameOf(Zone zone);

/// `moment` with its offset in `zone`.
Stamp stampIn(Zone zone, std::int64_t moment);

/// The start of `day` in `zone`.
Stamp midnight(Zone zone, CivilDay day);
