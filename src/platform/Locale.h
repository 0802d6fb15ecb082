#pragma once
// Digit grouping of whole numbers, the one thing that follows the user's numeric locale.

#include <cstdint>
#include <string>

/// How digits are grouped. A default-made one puts a comma every three digits.
struct DigitGrouping {
  std::string separator = ",";  ///< UTF-8

  /// Sizes of the groups from the right, one char each, in the C library's form: the last repeats,
  /// a CHAR_MAX ends the grouping, none at all means no grouping.
  std::string sizes = "\3";

  bool operator==(const DigitGrouping&) const = default;
};

/// `number` in decimal with its digits grouped: "-1,234,567".
std::string grouped(std::int64_t number, const DigitGrouping& grouping);

/// `value` rounded to a whole number, halves away from zero, and grouped so. Beyond the range of
/// int64 plain digits; "inf", "-inf" or "nan" when it is not finite.
std::string groupedWhole(double value, const DigitGrouping& grouping);
