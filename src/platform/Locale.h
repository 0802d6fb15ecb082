#pragma once
// Digit grouping of whole numbers, the only text that follows the user's numeric locale.

#include <cstdint>
#include <string>

/// How digits are grouped. The default is a comma every three digits.
struct DigitGrouping {
  std::string separator = ",";  ///< UTF-8

  /// Group sizes from the right, one char each, in the C library's form. The last size repeats,
  /// CHAR_MAX ends the grouping, and an empty text means no grouping.
  std::string sizes = "\3";

  bool operator==(const DigitGrouping&) const = default;
};

/// `number` in decimal with its digits grouped: "-1,234,567".
std::string grouped(std::int64_t number, const DigitGrouping& grouping);

/// `value` rounded to a whole number, halves away from zero, and grouped the same way. Plain digits
/// beyond the range of int64; "inf", "-inf" or "nan" when it is not finite.
std::string groupedWhole(double value, const DigitGrouping& grouping);
