#include "sample/life/Sample.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>

namespace {

constexpr std::array<std::int64_t, 7> powersOfTen{1, 10, 100, 1000, 10000, 100000, 1000000};

std::int64_t scaleOf(int places) { return powersOfTen.at(static_cast<std::size_t>(places)); }

}  // namespace

Decimal Decimal::nearest(double value, int places) {
  return {std::llround(value * static_cast<double>(scaleOf(places))), places};
}

double Decimal::number() const {
  // Both are whole numbers below 2^53, so the quotient is the double nearest to the decimal text.
  return static_cast<double>(digits) / static_cast<double>(scaleOf(places));
}

std::string Decimal::text() const {
  std::array<char, 32> letters{};
  const std::int64_t scale = scaleOf(places);
  char* end = letters.data();
  if (digits < 0) *end++ = '-';
  const std::int64_t magnitude = digits < 0 ? -digits : digits;
  end = std::to_chars(end, letters.data() + letters.size(), magnitude / scale).ptr;
  std::int64_t fraction = magnitude % scale;
  if (fraction != 0) *end++ = '.';
  for (std::int64_t unit = scale / 10; fraction != 0; unit /= 10) {
    *end++ = static_cast<char>('0' + fraction / unit);
    fraction %= unit;
  }
  return {letters.data(), end};
}
