#pragma once
// The unit in which the numbers of a type are stored, whatever unit an export has them in.

#include <optional>
#include <string_view>

namespace StoredUnit {

/// That of `type`, which has no prefix any more ("BodyMass"): for each type whose unit can be
/// chosen on the phone, and for times and rates, the one that a phone set to metric units exports.
/// Of distances it is km, of energy kcal. `nullopt` for all other types: they are stored in the
/// unit that came first.
std::optional<std::string_view> of(std::string_view type);

}  // namespace StoredUnit
