#pragma once
// The numbers of an export, and conversion between their units.

#include <optional>
#include <string_view>

/// A number with its unit.
struct Quantity {
  double number = 0;
  std::string_view unit;  ///< empty when there is none

  bool operator==(const Quantity&) const = default;
};

/// Units have the spelling of exports and are case-sensitive: "Cal" is a thousand "cal".
namespace Units {

/// The number in `text`, independent of the locale; `nullopt` when `text` is not a finite number.
std::optional<double> number(std::string_view text);

/// "418 cm": a finite number, optional blanks (also no-break spaces) and an optional unit.
std::optional<Quantity> quantity(std::string_view text);

/// The number of `quantity` in `unit`; unchanged when that is already its unit, even an unknown
/// one. `nullopt` when one of the units is unknown, when they measure different things, and when
/// the result is not finite.
std::optional<double> converted(const Quantity& quantity, std::string_view unit);

/// Whether numbers in `unit` can be converted to another unit.
bool isConvertible(std::string_view unit);

/// `unit` as our own text with static lifetime, without the molar mass: "mmol/L" for
/// "mmol<180.1558800000541>/L". `nullopt` when it is not convertible.
std::optional<std::string_view> spelling(std::string_view unit);

/// The maximum difference between two numbers in `unit`, one of them `number`, of the same sample.
/// The phone writes about six digits in its current unit. The result is a hundred-thousandth of the
/// number; for a temperature the other scale's zero is taken into account.
double roundingIn(std::string_view unit, double number);

}  // namespace Units
