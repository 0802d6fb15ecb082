#include "sample/Calendar.h"

#include <chrono>
#include <cstddef>
#include <cstdlib>

namespace {

constexpr int hour = 3600;
constexpr std::int64_t dayLength = 86400;

std::int64_t dayNumber(CivilDay day) {
  return std::chrono::sys_days{day}.time_since_epoch().count();
}

/// The day before which `moment` rounds down, also before 1970.
std::int64_t flooredDays(std::int64_t seconds) {
  return seconds / dayLength - (seconds % dayLength < 0 ? 1 : 0);
}

/// Writes `number` with leading zeros over the `width` letters that begin at `place`.
void writeDigits(char* place, int width, int number) {
  for (int index = width - 1; index >= 0; --index) {
    place[index] = static_cast<char>('0' + number % 10);
    number /= 10;
  }
}

}  // namespace

StampText::StampText(Stamp stamp) : letters{} {
  const std::int64_t wall = stamp.moment + stamp.offset;
  const std::int64_t days = flooredDays(wall);
  const auto second = static_cast<int>(wall - days * dayLength);
  const CivilDay day{std::chrono::sys_days{std::chrono::days{days}}};
  constexpr std::string_view form = "yyyy-MM-dd HH:mm:ss +hhmm";
  form.copy(letters.data(), form.size());
  writeDigits(&letters[0], 4, static_cast<int>(day.year()));
  writeDigits(&letters[5], 2, static_cast<int>(static_cast<unsigned>(day.month())));
  writeDigits(&letters[8], 2, static_cast<int>(static_cast<unsigned>(day.day())));
  writeDigits(&letters[11], 2, second / hour);
  writeDigits(&letters[14], 2, second / 60 % 60);
  writeDigits(&letters[17], 2, second % 60);
  const int minutes = std::abs(stamp.offset) / 60;
  letters[20] = stamp.offset < 0 ? '-' : '+';
  writeDigits(&letters[21], 4, minutes / 60 * 100 + minutes % 60);
}

namespace {

/// Whether New York's clocks are an hour ahead: from 2:00 standard time (7:00 UTC) on the second
/// Sunday of March to 2:00 summer time (6:00 UTC) on the first Sunday of November.
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

Stamp stampIn(Zone zone, std::int64_t moment) { return {moment, offsetAt(zone, moment)}; }

Stamp midnight(Zone zone, CivilDay day) {
  const std::int64_t wall = dayNumber(day) * dayLength;
  // The clocks change at two in the morning, so the offset at the midnight of standard time, which
  // is at most an hour late, is the offset of midnight itself.
  const std::int64_t standard = wall - (zone == Zone::shanghai ? 8 * hour : -5 * hour);
  const int offset = offsetAt(zone, standard);
  return {wall - offset, offset};
}
