#pragma once
// The numbers of an export, and the units that measure the same thing.

#include <optional>
#include <string_view>

/// A number and the unit behind it.
struct Quantity {
  double number = 0;
  std::string_view unit;  ///< empty when there is none

  bool operator==(const Quantity&) const = default;
};

/// Units are spelled as exports spell them, letter case included: "Cal" is a thousand "cal".
namespace Units {

/// The number that the whole of `text` is, in any locale; `nullopt` when it is none or not finite.
std::optional<double> number(std::string_view text);

/// "418 cm": a finite number, blanks (no-break ones too) or none, a unit or none.
std::optional<Quantity> quantity(std::string_view text);

/// The number of `quantity` in `unit`; unchanged when it is in that unit already, whatever unit
/// that is. `nullopt` when one of the two units is unknown, when they measure different things, and
/// when the result is not finite.
std::optional<double> converted(const Quantity& quantity, std::string_view unit);

/// Whether numbers in `unit` may come in another unit too.
bool isConvertible(std::string_view unit);

/// `unit` as a text of ours with static lifetime, without the mass of a mole: "mmol/L" for
/// "mmol<180.1558800000541>/L". `nullopt` when it is not convertible.
std::optional<std::string_view> spelling(std::string_view unit);

/// How far apart two numbers in `unit`, one of them `number`, may lie and be one sample: the phone
/// writes six digits or so of a number in the unit that is chosen there. A hundred-thousandth, of
/// the number itself or, for a temperature, of what it is with its zero elsewhere.
double roundingIn(std::string_view unit, double number);

}  // namespace Units
