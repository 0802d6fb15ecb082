#pragma once
// The stored unit of a type's numbers, independent of the export's unit.

#include <optional>
#include <string_view>

namespace StoredUnit {

/// The unit of `type`, which has no prefix ("BodyMass"). Each type with a selectable unit on the
/// phone has a metric unit, and so do times and rates: km for distances, kcal for energy, mg/dL for
/// glucose. `nullopt` for all other types, which are stored in their first unit.
std::optional<std::string_view> of(std::string_view type);

}  // namespace StoredUnit
