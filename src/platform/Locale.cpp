#include "platform/Locale.h"
#include "platform/Text.h"

#include <climits>
#include <cmath>
#include <cstddef>
#include <string_view>

std::string grouped(std::int64_t number, const DigitGrouping& grouping) {
  std::string digits = std::to_string(number);
  const std::size_t firstDigit = number < 0 ? 1 : 0;
  std::size_t position = digits.size();
  for (std::size_t group = 0; group < grouping.sizes.size();) {
    const char size = grouping.sizes[group];
    if (size <= 0 || size == CHAR_MAX) break;
    if (position - firstDigit <= static_cast<std::size_t>(size)) break;
    position -= static_cast<std::size_t>(size);
    digits.insert(position, grouping.separator);
    if (group + 1 < grouping.sizes.size()) ++group;
  }
  return digits;
}

std::string groupedWhole(double value, const DigitGrouping& grouping) {
  if (std::isnan(value)) return "nan";
  constexpr double firstBeyondInt64 = 0x1p63;
  if (std::abs(value) >= firstBeyondInt64) return fixedDecimals(value, 0);
  return grouped(static_cast<std::int64_t>(std::llround(value)), grouping);
}
