#pragma once
// Days and stamps as Apple's Health export writes them, and the arithmetic of calendar days.

#include "platform/Stamp.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// A day of the Gregorian calendar, without a time zone.
using CivilDay = std::chrono::year_month_day;

/// A moment as the local clock of this machine shows it.
struct LocalTime {
  CivilDay day;
  int hour;    ///< 0-23
  int minute;  ///< 0-59
  int second;  ///< 0-60

  bool operator==(const LocalTime&) const = default;
};

namespace AppleFormat {

/// Calendar days, "yyyy-MM-dd".
struct DayParser {
  /// The day that `text` names: a year of one to four digits (1 to 9999), a month and a day of one
  /// or two digits each, joined by "-". No other characters may surround them. `nullopt` for
  /// anything else, including 30 February.
  std::optional<CivilDay> parse(std::string_view text) const;
};

/// Stamps with their own zone, "yyyy-MM-dd HH:mm:ss Z".
struct StampParser {
  /// Seconds since 1970-01-01 00:00 UTC. The format is a day as DayParser reads it, one blank,
  /// H:m:s (0-23, 0-59, 0-59), one blank and a zone. The zone is "+hhmm" or "-hh:mm" up to 23:59,
  /// "Z" or "GMT". `nullopt` for anything else. Allocates nothing.
  std::optional<std::int64_t> parse(std::string_view text) const;

  /// The same, with the zone's offset from UTC.
  std::optional<Stamp> stamp(std::string_view text) const;
};

inline constexpr DayParser dayParser;
inline constexpr StampParser stampParser;

/// "2024-02-03": four digits of year, two of month and day.
std::string dayText(CivilDay day);

/// `moment` (seconds since 1970 UTC) in the machine's time zone. A moment outside the years 1 to
/// 9999 is clamped to that range. Throws std::system_error when the system cannot convert it.
LocalTime localTime(double moment);

/// `moment` in the machine's time zone as "yyyy-MM-dd HH:mm".
std::string minuteText(double moment);

/// `moment` in the machine's time zone as "yyyy-MM-dd HH:mm:ss".
std::string secondText(double moment);

/// Whole days from `first` to `last`, negative when `last` is earlier. These are calendar days, so
/// a day with a clock change counts as one.
int daysBetween(CivilDay first, CivilDay last);

/// The same for two texts in the format of `dayParser`; 0 when either of them is not a valid day.
int daysBetween(std::string_view first, std::string_view last);

/// The day `count` days before `day`.
CivilDay daysBefore(CivilDay day, int count);

/// The day `count` days after `day`.
CivilDay daysAfter(CivilDay day, int count);

/// The same day one calendar year earlier; 29 February becomes 28 February.
CivilDay yearBefore(CivilDay day);

}  // namespace AppleFormat
