#include "sample/life/Calendar.h"

#include <chrono>

namespace {

constexpr int hour = 3600;
constexpr std::int64_t dayLength = 86400;

std::int64_t dayNumber(CivilDay day) {
  return std::chrono::sys_days{day}.time_since_epoch().count();
}

/// Whole days since 1970, rounded down, also before 1970.
std::int64_t flooredDays(std::int64_t seconds) {
  return seconds / dayLength - (seconds % dayLength < 0 ? 1 : 0);
}

/// Whether New York has summer time at `moment`. Summer time begins at 2:00 standard time (7:00
/// UTC) on the second Sunday of March and ends at 2:00 summer time (6:00 UTC) on the first Sunday
/// of November.
bool isSummerInNewYork(std::int64_t moment) {
  using namespace std::chrono;
  const CivilDay day{sys_days{days{flooredDays(moment)}}};
  const CivilDay spring{sys_days{day.year() / March / Sunday[2]}};
  const CivilDay autumn{sys_days{day.year() / November / Sunday[1]}};
  return moment >= dayNumber(spring) * dayLength + 7 * hour &&
         moment < dayNumber(autumn) * dayLength + 6 * hour;
}

int offsetAt(Zone zone, std::int64_t moment) {
  if (zone == Zone::shanghai) return 8 * hour;
  return isSummerInNewYork(moment) ? -4 * hour : -5 * hour;
}

}  // namespace

std::string_view nameOf(Zone zone) {
  return zone == Zone::shanghai ? "Asia/Shanghai" : "America/New_York";
}

Stamp stampIn(Zone zone, std::int64_t moment) { return {moment, offsetAt(zone, moment)}; }

Stamp midnight(Zone zone, CivilDay day) {
  const std::int64_t wall = dayNumber(day) * dayLength;
  // Clocks change at 2:00. Midnight in standard time is at most one hour after the actual midnight,
  // so both have the same offset.
  const std::int64_t standard = wall - (zone == Zone::shanghai ? 8 * hour : -5 * hour);
  const int offset = offsetAt(zone, standard);
  return {wall - offset, offset};
}
