#pragma once
// The names that a published text about an export may contain.

#include <optional>
#include <string_view>

/// Names of types, units and elements that the Health app itself defines. Other programs name types
/// and units freely, even after people, so all other names are `nullopt`. The result has static
/// lifetime and is never the given text itself.
namespace KnownNames {

/// The type of a record, without its prefix: "StepCount".
std::optional<std::string_view> type(std::string_view name);

/// A unit in the spelling of exports: "km", "count/min". The unit of an amount of substance
/// contains the molar mass, which is omitted: "mmol<180.1558800000541>/L" becomes "mmol/L".
std::optional<std::string_view> unit(std::string_view name);

/// An element of the export's XML: "WorkoutRoute".
std::optional<std::string_view> element(std::string_view name);

}  // namespace KnownNames
