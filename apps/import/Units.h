#pragma once
// The numbers of an export and their units, brought to the units that the database keeps.

#include <optional>
#include <string_view>

/// A number and the unit behind it.
struct Quantity {
  double number = 0;
  std::string_view unit;  ///< empty when there is none

  bool operator==(const Quantity&) const = default;
};

/// All but the first two answer `nullopt` for a unit they do not know and for a result that is not
/// finite. A number that is already in the wanted unit comes back unchanged. Units are spelled as
/// exports spell them, letter case included: "Cal" is a thousand "cal".
namespace Units {

/// The number that the whole of `text` is, in any locale; `nullopt` when it is none or not finite.
std::optional<double> number(std::string_view text);

/// "418 cm": a finite number, blanks (no-break ones too) or none, a unit or none.
std::optional<Quantity> quantity(std::string_view text);

std::optional<double> kilometres(const Quantity& length);
std::optional<double> metres(const Quantity& length);
std::optional<double> kilocalories(const Quantity& energy);
std::optional<double> kilograms(const Quantity& mass);
std::optional<double> minutes(const Quantity& time);
std::optional<double> celsius(const Quantity& temperature);
std::optional<double> beatsPerMinute(const Quantity& rate);

/// Metabolic equivalents: "4.5 kcal/hr·kg", however its denominator is spelled, or a number alone.
std::optional<double> mets(const Quantity& intensity);

}  // namespace Units
