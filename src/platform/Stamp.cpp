#include "platform/Stamp.h"

#include <chrono>
#include <cstddef>
#include <cstdlib>

namespace {

/// Writes `number` with leading zeros into the `width` characters at `place`.
void writeDigits(char* place, int width, int number) {
  for (int index = width - 1; index >= 0; --index) {
    place[index] = static_cast<char>('0' + number % 10);
    number /= 10;
  }
}

}  // namespace

StampText::StampText(Stamp stamp) : letters{} {
  using namespace std::chrono;
  constexpr int hour = 3600;
  const sys_seconds wall{seconds{stamp.moment + stamp.offset}};
  const sys_days midnight = floor<days>(wall);
  const auto second = static_cast<int>((wall - midnight).count());
  const year_month_day day{midnight};
  constexpr std::string_view form = "yyyy-MM-dd HH:mm:ss +hhmm";
  static_assert(form.size() == length);
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
