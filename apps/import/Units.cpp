#include "import/Units.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <span>
#include <system_error>

namespace {

/// One `unit` is `numerator` / `denominator` of the table's own. Two whole numbers instead of one
/// fraction: dividing by 1000 rounds once, multiplying by 0.001 twice.
struct Scale {
  std::string_view unit;
  double numerator;
  double denominator;
};

constexpr std::array kilometreScales{Scale{"km", 1, 1},
                                     Scale{"m", 1, 1000},
                                     Scale{"cm", 1, 100000},
                                     Scale{"mm", 1, 1000000},
                                     Scale{"mi", 1609344, 1000000},
                                     Scale{"yd", 9144, 10000000},
                                     Scale{"ft", 3048, 10000000},
                                     Scale{"in", 254, 10000000}};

constexpr std::array metreScales{Scale{"m", 1, 1},
                                 Scale{"cm", 1, 100},
                                 Scale{"mm", 1, 1000},
                                 Scale{"km", 1000, 1},
                                 Scale{"mi", 1609344, 1000},
                                 Scale{"yd", 9144, 10000},
                                 Scale{"ft", 3048, 10000},
                                 Scale{"in", 254, 10000}};

constexpr std::array kilocalorieScales{Scale{"kcal", 1, 1},
                                       Scale{"Cal", 1, 1},
                                       Scale{"kJ", 1000, 4184},
                                       Scale{"J", 1, 4184},
                                       Scale{"cal", 1, 1000}};

constexpr std::array kilogramScales{Scale{"kg", 1, 1},
                                    Scale{"lb", 45359237, 100000000},
                                    Scale{"g", 1, 1000},
                                    Scale{"st", 635029318, 100000000},
                                    Scale{"oz", 28349523125, 1000000000000}};

constexpr std::array minuteScales{Scale{"min", 1, 1},
                                  Scale{"s", 1, 60},
                                  Scale{"sec", 1, 60},
                                  Scale{"ms", 1, 60000},
                                  Scale{"hr", 60, 1},
                                  Scale{"h", 60, 1},
                                  Scale{"d", 1440, 1}};

constexpr std::array beatScales{
    Scale{"count/min", 1, 1}, Scale{"bpm", 1, 1}, Scale{"count/s", 60, 1}};

constexpr std::array metScales{Scale{"kcal/hr·kg", 1, 1},
                               Scale{"kcal/(hr·kg)", 1, 1},
                               Scale{"kcal/kg·hr", 1, 1},
                               Scale{"kcal/(kg·hr)", 1, 1},
                               Scale{"", 1, 1}};

std::optional<double> finiteOrNone(double number) {
  return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::optional<double> scaled(const Quantity& quantity, std::span<const Scale> scales) {
  for (const Scale& scale : scales) {
    if (scale.unit == quantity.unit) {
      return finiteOrNone(quantity.number * scale.numerator / scale.denominator);
    }
  }
  return std::nullopt;
}

constexpr std::array<std::string_view, 3> blanks{" ", "\xC2\xA0", "\xE2\x80\xAF"};

/// `text` without the blanks at its start.
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

std::optional<double> Units::kilometres(const Quantity& length) {
  return scaled(length, kilometreScales);
}

std::optional<double> Units::metres(const Quantity& length) { return scaled(length, metreScales); }

std::optional<double> Units::kilocalories(const Quantity& energy) {
  return scaled(energy, kilocalorieScales);
}

std::optional<double> Units::kilograms(const Quantity& mass) {
  return scaled(mass, kilogramScales);
}

std::optional<double> Units::minutes(const Quantity& time) { return scaled(time, minuteScales); }

std::optional<double> Units::celsius(const Quantity& temperature) {
  if (temperature.unit == "degC") return temperature.number;
  if (temperature.unit == "degF") return finiteOrNone((temperature.number - 32) * 5 / 9);
  if (temperature.unit == "K") return finiteOrNone(temperature.number - 273.15);
  return std::nullopt;
}

std::optional<double> Units::beatsPerMinute(const Quantity& rate) {
  return scaled(rate, beatScales);
}

std::optional<double> Units::mets(const Quantity& intensity) {
  return scaled(intensity, metScales);
}
