#include "import/export/Units.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <system_error>

namespace {

enum class Dimension { length, mass, energy, speed, volume, pressure, time, frequency, intensity };

/// One `unit` is `numerator` / `denominator` of the first unit of its dimension. Two whole numbers
/// are more exact than one fraction: division by 1000 rounds once, multiplication by 0.001 twice.
struct Scale {
  std::string_view unit;
  Dimension dimension;
  std::int64_t numerator;
  std::int64_t denominator;
};

constexpr std::array scales{Scale{"m", Dimension::length, 1, 1},
                            Scale{"km", Dimension::length, 1000, 1},
                            Scale{"cm", Dimension::length, 1, 100},
                            Scale{"mm", Dimension::length, 1, 1000},
                            Scale{"mi", Dimension::length, 1609344, 1000},
                            Scale{"yd", Dimension::length, 9144, 10000},
                            Scale{"ft", Dimension::length, 3048, 10000},
                            Scale{"in", Dimension::length, 254, 10000},

                            Scale{"kg", Dimension::mass, 1, 1},
                            Scale{"g", Dimension::mass, 1, 1000},
                            Scale{"mg", Dimension::mass, 1, 1000000},
                            Scale{"mcg", Dimension::mass, 1, 1000000000},
                            Scale{"lb", Dimension::mass, 45359237, 100000000},
                            Scale{"st", Dimension::mass, 635029318, 100000000},
                            Scale{"oz", Dimension::mass, 28349523125, 1000000000000},

                            Scale{"J", Dimension::energy, 1, 1},
                            Scale{"kJ", Dimension::energy, 1000, 1},
                            Scale{"kcal", Dimension::energy, 4184, 1},
                            Scale{"Cal", Dimension::energy, 4184, 1},
                            Scale{"cal", Dimension::energy, 4184, 1000},

                            Scale{"m/s", Dimension::speed, 1, 1},
                            Scale{"km/hr", Dimension::speed, 1000, 3600},
                            Scale{"mi/hr", Dimension::speed, 1609344, 3600000},
                            Scale{"ft/s", Dimension::speed, 3048, 10000},

                            Scale{"L", Dimension::volume, 1, 1},
                            Scale{"dL", Dimension::volume, 1, 10},
                            Scale{"cL", Dimension::volume, 1, 100},
                            Scale{"mL", Dimension::volume, 1, 1000},
                            Scale{"fl_oz_us", Dimension::volume, 295735295625, 10000000000000},
                            Scale{"cup_us", Dimension::volume, 2365882365, 10000000000},
                            Scale{"pt_us", Dimension::volume, 473176473, 1000000000},
                            Scale{"fl_oz_imp", Dimension::volume, 284130625, 10000000000},
                            Scale{"cup_imp", Dimension::volume, 284130625, 1000000000},
                            Scale{"pt_imp", Dimension::volume, 56826125, 100000000},

                            Scale{"Pa", Dimension::pressure, 1, 1},
                            Scale{"hPa", Dimension::pressure, 100, 1},
                            Scale{"kPa", Dimension::pressure, 1000, 1},
                            Scale{"mmHg", Dimension::pressure, 133322387415, 1000000000},
                            Scale{"inHg", Dimension::pressure, 3386389, 1000},
                            Scale{"cmAq", Dimension::pressure, 980665, 10000},
                            Scale{"atm", Dimension::pressure, 101325, 1},

                            Scale{"s", Dimension::time, 1, 1},
                            Scale{"sec", Dimension::time, 1, 1},
                            Scale{"ms", Dimension::time, 1, 1000},
                            Scale{"min", Dimension::time, 60, 1},
                            Scale{"hr", Dimension::time, 3600, 1},
                            Scale{"h", Dimension::time, 3600, 1},
                            Scale{"d", Dimension::time, 86400, 1},

                            Scale{"count/min", Dimension::frequency, 1, 1},
                            Scale{"bpm", Dimension::frequency, 1, 1},
                            Scale{"count/s", Dimension::frequency, 60, 1},

                            // Metabolic equivalents: exports spell the denominator in several ways.
                            Scale{"kcal/hr·kg", Dimension::intensity, 1, 1},
                            Scale{"kcal/(hr·kg)", Dimension::intensity, 1, 1},
                            Scale{"kcal/kg·hr", Dimension::intensity, 1, 1},
                            Scale{"kcal/(kg·hr)", Dimension::intensity, 1, 1}};

const Scale* scaleOf(std::string_view unit) {
  const auto found = std::ranges::find(scales, unit, &Scale::unit);
  return found == scales.end() ? nullptr : &*found;
}

std::optional<double> finiteOrNone(double number) {
  return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::optional<double> scaled(const Quantity& quantity, std::string_view unit) {
  const Scale* const from = scaleOf(quantity.unit);
  const Scale* const to = scaleOf(unit);
  if (from == nullptr || to == nullptr || from->dimension != to->dimension) return std::nullopt;
  // Without common factors both products are small enough to be exact as a double.
  const auto product =
      [](std::int64_t one, std::int64_t divisor, std::int64_t other, std::int64_t otherDivisor) {
        const std::int64_t reduced = one / divisor;
        const std::int64_t otherReduced = other / otherDivisor;
        return static_cast<double>(reduced) * static_cast<double>(otherReduced);
      };
  const std::int64_t numerators = std::gcd(from->numerator, to->numerator);
  const std::int64_t denominators = std::gcd(from->denominator, to->denominator);
  const double numerator = product(from->numerator, numerators, to->denominator, denominators);
  const double denominator = product(from->denominator, denominators, to->numerator, numerators);
  return finiteOrNone(quantity.number * numerator / denominator);
}

constexpr std::array<std::string_view, 3> temperatures{"degC", "degF", "K"};

/// Temperature scales have different zeros.
std::optional<double> celsius(const Quantity& temperature) {
  if (temperature.unit == "degC") return temperature.number;
  if (temperature.unit == "degF") return (temperature.number - 32) * 5 / 9;
  if (temperature.unit == "K") return temperature.number - 273.15;
  return std::nullopt;
}

std::optional<double> temperature(const Quantity& quantity, std::string_view unit) {
  const std::optional<double> degrees = celsius(quantity);
  if (!degrees) return std::nullopt;
  if (unit == "degC") return finiteOrNone(*degrees);
  if (unit == "degF") return finiteOrNone(*degrees * 9 / 5 + 32);
  if (unit == "K") return finiteOrNone(*degrees + 273.15);
  return std::nullopt;
}

/// The factor from `unit`, a concentration, to mg/dL. The unit of amounts contains the molar mass:
/// "mmol<180.1558800000541>/L".
std::optional<double> milligramsPerDecilitre(std::string_view unit) {
  if (unit == "mg/dL") return 1;
  constexpr std::string_view begin = "mmol<";
  constexpr std::string_view end = ">/L";
  if (!unit.starts_with(begin) || !unit.ends_with(end)) return std::nullopt;
  unit.remove_prefix(begin.size());
  if (unit.size() < end.size()) return std::nullopt;
  const std::optional<double> molarMass = Units::number(unit.substr(0, unit.size() - end.size()));
  return molarMass && *molarMass > 0 ? std::optional(*molarMass / 10) : std::nullopt;
}

std::optional<double> concentration(const Quantity& quantity, std::string_view unit) {
  const std::optional<double> from = milligramsPerDecilitre(quantity.unit);
  const std::optional<double> to = milligramsPerDecilitre(unit);
  if (!from || !to) return std::nullopt;
  return finiteOrNone(quantity.number * *from / *to);
}

constexpr std::array<std::string_view, 3> blanks{" ", "\xC2\xA0", "\xE2\x80\xAF"};

/// `text` without leading blanks.
std::string_view withoutBlanks(std::string_view text) {
  for (auto blank = blanks.begin(); blank != blanks.end();) {
    if (text.starts_with(*blank)) {
      text.remove_prefix(blank->size());
      blank = blanks.begin();
    } else {
      ++blank;
    }
  }
  return text;
}

}  // namespace

std::optional<double> Units::number(std::string_view text) {
  double value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end) return std::nullopt;
  return finiteOrNone(value);
}

std::optional<Quantity> Units::quantity(std::string_view text) {
  double value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || !std::isfinite(value)) return std::nullopt;
  const std::string_view unit = text.substr(static_cast<std::size_t>(stop - text.data()));
  return Quantity{.number = value, .unit = withoutBlanks(unit)};
}

std::optional<double> Units::converted(const Quantity& quantity, std::string_view unit) {
  if (quantity.unit == unit) return finiteOrNone(quantity.number);
  if (const std::optional<double> number = scaled(quantity, unit)) return number;
  if (const std::optional<double> degrees = temperature(quantity, unit)) return degrees;
  return concentration(quantity, unit);
}

bool Units::isConvertible(std::string_view unit) {
  return scaleOf(unit) != nullptr || celsius({.number = 0, .unit = unit}) ||
         milligramsPerDecilitre(unit);
}

std::optional<std::string_view> Units::spelling(std::string_view unit) {
  if (const Scale* const scale = scaleOf(unit)) return scale->unit;
  const auto temperature = std::ranges::find(temperatures, unit);
  if (temperature != temperatures.end()) return *temperature;
  if (!milligramsPerDecilitre(unit)) return std::nullopt;
  return unit == "mg/dL" ? "mg/dL" : "mmol/L";
}

double Units::roundingIn(std::string_view unit, double number) {
  constexpr double share = 1e-5;
  // Near 0 degC, the same temperature in degF is about 32, so its rounding is larger.
  const double otherZero = unit == "degC" ? 18 : unit == "degF" ? 32 : 0;
  return share * (std::abs(number) + otherZero);
}
