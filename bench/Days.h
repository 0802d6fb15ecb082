#pragma once
// The days of the measured calls, within the household that scripts/bench makes.

namespace Days {

inline constexpr const char* last = "2026-11-20";
inline constexpr const char* ninetyBefore = "2026-08-22";
inline constexpr const char* ordinary = "2026-10-10";

/// Before the household's first record and after the longest of the AddedWorkouts.
inline constexpr const char* beforeAll = "2012-01-01";

}  // namespace Days
