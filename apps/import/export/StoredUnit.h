#pragma once
// The unit in which the numbers of a type are stored, whatever unit an export has them in.

#include <optional>
#include <string_view>

namespace StoredUnit {

/// That of `type`, which has no prefix any more ("BodyMass"): a metric unit for each type whose
/// unit can be chosen on the phone, and for times and rates. Of distances it is km, of energy kcal,
/// of glucose mg/dL. `nullopt` for all other types: they are stored in the unit that came first.
std::optional<std::string_view> of(std::string_view type);

}  // namespace StoredUnit
