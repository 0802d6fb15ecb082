#pragma once
// The units in which a phone exports, which its owner chooses.

#include "sample/life/Sample.h"

#include <string>
#include <string_view>

enum class UnitSystem {
  metric,    ///< as a life is told
  imperial,  ///< miles, pounds, Fahrenheit, Calories with a capital letter
};

namespace ExportUnits {

/// A number and its unit as an export writes them.
struct Quantity {
  std::string number;
  std::string_view unit;

  bool operator==(const Quantity&) const = default;
};

/// `value` in `unit`, of a life, as a phone writes it that measures in `system`. What both systems
/// have in common (percent, counts, times) comes back as it is, and so does everything metric. A
/// converted number is rounded to six significant digits; it has no exponent. `type` has no prefix
/// ("DistanceSwimming"); it is empty for what is no sample.
Quantity worded(UnitSystem system, std::string_view type, Decimal value, std::string_view unit);

}  // namespace ExportUnits
