#include "platform/AppleFormat.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <ctime>
#include <system_error>

namespace {

/// Reads a text from left to right. A reader that does not match consumes nothing.
class Cursor {
public:
  explicit Cursor(std::string_view text) : rest(text) {}

  bool atEnd() const { return rest.empty(); }

  bool take(std::string_view expected) {
    if (!rest.starts_with(expected)) return false;
    rest.remove_prefix(expected.size());
    return true;
  }

  /// A number of `fewest` to `most` decimal digits; consumes as many digits as there are.
  std::optional<int> number(std::size_t fewest, std::size_t most) {
    int value = 0;
    std::size_t count = 0;
    while (count < most && count < rest.size() && rest[count] >= '0' && rest[count] <= '9') {
      value = value * 10 + (rest[count] - '0');
      ++count;
    }
    if (count < fewest) return std::nullopt;
    rest.remove_prefix(count);
    return value;
  }

private:
  std::string_view rest;
};

std::optional<CivilDay> civilDay(int year, int month, int day) {
  const CivilDay candidate{std::chrono::year{year},
                           std::chrono::month{static_cast<unsigned>(month)},
                           std::chrono::day{static_cast<unsigned>(day)}};
  if (year < 1 || !candidate.ok()) return std::nullopt;
  return candidate;
}

std::optional<CivilDay> dayAt(Cursor& cursor) {
  const std::optional<int> year = cursor.number(1, 4);
  if (!year || !cursor.take("-")) return std::nullopt;
  const std::optional<int> month = cursor.number(1, 2);
  if (!month || !cursor.take("-")) return std::nullopt;
  const std::optional<int> day = cursor.number(1, 2);
  if (!day) return std::nullopt;
  return civilDay(*year, *month, *day);
}

/// The time of day in seconds; `nullopt` when a part is out of its range.
std::optional<int> clockSeconds(int hour, int minute, int second) {
  if (hour > 23 || minute > 59 || second > 59) return std::nullopt;
  return (hour * 60 + minute) * 60 + second;
}

std::optional<int> clockSecondsAt(Cursor& cursor) {
  const std::optional<int> hour = cursor.number(1, 2);
  if (!hour || !cursor.take(":")) return std::nullopt;
  const std::optional<int> minute = cursor.number(1, 2);
  if (!minute || !cursor.take(":")) return std::nullopt;
  const std::optional<int> second = cursor.number(1, 2);
  if (!second) return std::nullopt;
  return clockSeconds(*hour, *minute, *second);
}

/// Seconds east of UTC.
std::optional<int> zoneOffsetAt(Cursor& cursor) {
  if (cursor.take("Z") || cursor.take("GMT")) return 0;
  const bool west = cursor.take("-");
  if (!west && !cursor.take("+")) return std::nullopt;
  const std::optional<int> hours = cursor.number(2, 2);
  cursor.take(":");
  const std::optional<int> minutes = cursor.number(2, 2);
  if (!hours || !minutes) return std::nullopt;
  const std::optional<int> offset = clockSeconds(*hours, *minutes, 0);
  if (!offset) return std::nullopt;
  return west ? -*offset : *offset;
}

Stamp stampOf(CivilDay day, int seconds, int zoneOffset) {
  const std::int64_t days = std::chrono::sys_days{day}.time_since_epoch().count();
  return {.moment = days * 86400 + seconds - zoneOffset, .offset = zoneOffset};
}

/// The number that the two digits at `position` spell; -1 when they are not both digits.
int twoDigits(std::string_view text, std::size_t position) {
  const int tens = text[position] - '0';
  const int ones = text[position + 1] - '0';
  return tens < 0 || tens > 9 || ones < 0 || ones > 9 ? -1 : tens * 10 + ones;
}

/// Reads the form of nearly every stored stamp, "2024-03-01 06:54:32 +0800", at fixed positions. A
/// long workout has hundreds of thousands of stamps, so this path must be fast. `nullopt` for any
/// other form.
std::optional<Stamp> canonicalStamp(std::string_view text) {
  if (text.size() != 25 || text[4] != '-' || text[7] != '-' || text[10] != ' ' || text[13] != ':' ||
      text[16] != ':' || text[19] != ' ' || (text[20] != '+' && text[20] != '-')) {
    return std::nullopt;
  }
  const int century = twoDigits(text, 0), yearOfCentury = twoDigits(text, 2);
  const int month = twoDigits(text, 5), dayOfMonth = twoDigits(text, 8);
  const int hour = twoDigits(text, 11), minute = twoDigits(text, 14);
  const int second = twoDigits(text, 17);
  const int zoneHours = twoDigits(text, 21), zoneMinutes = twoDigits(text, 23);
  if (std::min({century,
                yearOfCentury,
                month,
                dayOfMonth,
                hour,
                minute,
                second,
                zoneHours,
                zoneMinutes}) < 0) {
    return std::nullopt;
  }
  const std::optional<CivilDay> day = civilDay(century * 100 + yearOfCentury, month, dayOfMonth);
  const std::optional<int> seconds = clockSeconds(hour, minute, second);
  const std::optional<int> offset = clockSeconds(zoneHours, zoneMinutes, 0);
  if (!day || !seconds || !offset) return std::nullopt;
  return stampOf(*day, *seconds, text[20] == '-' ? -*offset : *offset);
}

}  // namespace

std::optional<CivilDay> AppleFormat::DayParser::parse(std::string_view text) const {
  Cursor cursor(text);
  const std::optional<CivilDay> day = dayAt(cursor);
  return cursor.atEnd() ? day : std::nullopt;
}

std::string AppleFormat::dayText(CivilDay day) {
  char text[32];
  const int length = std::snprintf(text,
                                   sizeof text,
                                   "%04d-%02u-%02u",
                                   static_cast<int>(day.year()),
                                   static_cast<unsigned>(day.month()),
                                   static_cast<unsigned>(day.day()));
  return {text, static_cast<std::size_t>(length)};
}

std::optional<std::int64_t> AppleFormat::StampParser::parse(std::string_view text) const {
  const std::optional<Stamp> read = stamp(text);
  return read ? std::optional(read->moment) : std::nullopt;
}

std::optional<Stamp> AppleFormat::StampParser::stamp(std::string_view text) const {
  if (const std::optional<Stamp> canonical = canonicalStamp(text)) return canonical;
  Cursor cursor(text);
  const std::optional<CivilDay> day = dayAt(cursor);
  if (!day || !cursor.take(" ")) return std::nullopt;
  const std::optional<int> seconds = clockSecondsAt(cursor);
  if (!seconds || !cursor.take(" ")) return std::nullopt;
  const std::optional<int> offset = zoneOffsetAt(cursor);
  if (!offset || !cursor.atEnd()) return std::nullopt;
  return stampOf(*day, *seconds, *offset);
}

LocalTime AppleFormat::localTime(double moment) {
  // One day inside the years 1 and 9999, so that no zone's offset leaves that range.
  constexpr double earliest = -62135510400.0;
  constexpr double latest = 253402214399.0;
  const double inside = std::fmin(std::fmax(moment, earliest), latest);
  const auto seconds = static_cast<std::time_t>(std::floor(inside));
  std::tm parts{};
  if (localtime_r(&seconds, &parts) == nullptr) {
    throw std::system_error(errno, std::generic_category(), "localtime_r");
  }
  return {CivilDay{std::chrono::year{parts.tm_year + 1900},
                   std::chrono::month{static_cast<unsigned>(parts.tm_mon + 1)},
                   std::chrono::day{static_cast<unsigned>(parts.tm_mday)}},
          parts.tm_hour,
          parts.tm_min,
          parts.tm_sec};
}

std::string AppleFormat::minuteText(double moment) {
  const std::string text = secondText(moment);
  return text.substr(0, text.size() - 3);
}

std::string AppleFormat::secondText(double moment) {
  const LocalTime time = localTime(moment);
  char clock[16];
  std::snprintf(clock, sizeof clock, " %02d:%02d:%02d", time.hour, time.minute, time.second);
  return dayText(time.day) + clock;
}

int AppleFormat::daysBetween(CivilDay first, CivilDay last) {
  return static_cast<int>((std::chrono::sys_days{last} - std::chrono::sys_days{first}).count());
}

int AppleFormat::daysBetween(std::string_view first, std::string_view last) {
  const std::optional<CivilDay> firstDay = dayParser.parse(first);
  const std::optional<CivilDay> lastDay = dayParser.parse(last);
  return firstDay && lastDay ? daysBetween(*firstDay, *lastDay) : 0;
}

CivilDay AppleFormat::daysBefore(CivilDay day, int count) {
  return CivilDay{std::chrono::sys_days{day} - std::chrono::days{count}};
}

CivilDay AppleFormat::daysAfter(CivilDay day, int count) {
  return CivilDay{std::chrono::sys_days{day} + std::chrono::days{count}};
}

CivilDay AppleFormat::yearBefore(CivilDay day) {
  const CivilDay earlier = day - std::chrono::years{1};
  if (earlier.ok()) return earlier;
  return CivilDay{earlier.year() / earlier.month() / std::chrono::last};
}
