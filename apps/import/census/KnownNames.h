#pragma once
// The names that may stand in a text about an export which a stranger is to read.

#include <optional>
#include <string_view>

/// Names of types, units and elements that the Health app itself gives. Other programs name types
/// and units as they please, after people as well, so all others are `nullopt`. What comes back has
/// static lifetime and is never the text that was asked about.
namespace KnownNames {

/// The type of a record, without its prefix: "StepCount".
std::optional<std::string_view> type(std::string_view name);

/// A unit as exports spell it: "km", "count/min". The unit of an amount of substance names the mass
/// of a mole, which is left out: "mmol<180.1558800000541>/L" is "mmol/L".
std::optional<std::string_view> unit(std::string_view name);

/// An element of the export's XML: "WorkoutRoute".
std::optional<std::string_view> element(std::string_view name);

}  // namespace KnownNames
