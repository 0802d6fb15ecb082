#pragma once
// The units of an export, chosen by the phone's owner.

#include "sample/life/Sample.h"

#include <string>
#include <string_view>

enum class UnitSystem {
  metric,    ///< as in the generated life
  imperial,  ///< miles, pounds, Fahrenheit, Calories with a capital letter
};

namespace ExportUnits {

/// A number and its unit as an export writes them.
struct Quantity {
  std::string number;
  std::string_view unit;

  bool operator==(const Quantity&) const = default;
};

/// `value` in `unit`, of the generated life, as a phone with `system` writes it. Metric values and
/// units common to both systems (percent, counts, times) are unchanged. A converted number is
/// rounded to six significant digits and has no exponent. `type` has no prefix
/// ("DistanceSwimming"); it is empty for quantities outside samples.
Quantity worded(UnitSystem system, std::string_view type, Decimal value, std::string_view unit);

}  // namespace ExportUnits
