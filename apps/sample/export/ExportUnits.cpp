#include "sample/export/ExportUnits.h"
#include "platform/Text.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

/// One `metric` is `numerator` / `denominator` of the imperial unit, plus `zero`.
struct Conversion {
  std::string_view metric;
  std::string_view type;  ///< the only type with this conversion; "" for all others
  std::string_view imperial;
  double numerator;
  double denominator;
  double zero = 0;
};

// The factors are exact: the international yard and pound, the gallon of 231 cubic inches, the
// thermochemical calorie. There is no general conversion of metres: the six-minute walk is in
// metres everywhere. Conversions of a single type come first.
constexpr std::array conversions{
    Conversion{"km", "DistanceSwimming", "yd", 1000, 0.9144},
    Conversion{"m", "DistanceSwimming", "yd", 1, 0.9144},
    Conversion{"m", "DistanceDownhillSnowSports", "mi", 1, 1609.344},
    Conversion{"km", "", "mi", 1, 1.609344},
    Conversion{"cm", "", "in", 1, 2.54},
    Conversion{"km/hr", "", "mi/hr", 1, 1.609344},
    Conversion{"m/s", "", "ft/s", 1, 0.3048},
    Conversion{"kg", "", "lb", 1, 0.45359237},
    Conversion{"kcal", "", "Cal", 1, 1},
    Conversion{"kJ", "", "Cal", 1, 4.184},
    Conversion{"mL", "", "fl_oz_us", 1, 29.5735295625},
    Conversion{"degC", "", "degF", 9, 5, 32},
};

std::string withSixDigits(double value) {
  if (value == 0) return "0";
  constexpr int digits = 6;
  const int digitsBeforePoint = static_cast<int>(std::floor(std::log10(std::abs(value)))) + 1;
  std::string text = fixedDecimals(value, std::max(0, digits - digitsBeforePoint));
  if (text.find('.') == std::string::npos) return text;
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

}  // namespace

ExportUnits::Quantity ExportUnits::worded(UnitSystem system, std::string_view type, Decimal value,
                                          std::string_view unit) {
  if (system == UnitSystem::metric) return {value.text(), unit};
  const auto found = std::ranges::find_if(conversions, [&](const Conversion& conversion) {
    return conversion.metric == unit && (conversion.type.empty() || conversion.type == type);
  });
  if (found == conversions.end()) return {value.text(), unit};
  const double number = value.number() * found->numerator / found->denominator + found->zero;
  return {withSixDigits(number), found->imperial};
}
