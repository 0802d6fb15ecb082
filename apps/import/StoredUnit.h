#pragma once
// The types that the database keeps in a unit of our choice, whatever unit an export has them in.

#include "import/Units.h"

#include <optional>
#include <string_view>

/// How the numbers of a type are stored.
struct StoredUnit {
  /// Brings a number to `unit`; null for a type whose numbers are stored as exported.
  std::optional<double> (*conversion)(const Quantity&) = nullptr;
  std::string_view unit;

  /// That of `type`, which has no prefix any more ("BodyMass").
  static constexpr StoredUnit of(std::string_view type) {
    if (type.starts_with("Distance")) return {Units::kilometres, "km"};
    if (type.ends_with("EnergyBurned")) return {Units::kilocalories, "kcal"};
    if (type == "BodyMass") return {Units::kilograms, "kg"};
    return {};
  }
};
