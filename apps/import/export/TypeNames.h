#pragma once
// The names of types without their prefixes.

#include <array>
#include <string_view>

namespace TypeNames {

/// The type of a record: "HKQuantityTypeIdentifierStepCount" becomes "StepCount".
constexpr std::string_view ofRecord(std::string_view type) {
  constexpr std::array<std::string_view, 3> prefixes{
      "HKQuantityTypeIdentifier", "HKCategoryTypeIdentifier", "HKDataType"};
  for (const std::string_view prefix : prefixes) {
    if (type.starts_with(prefix)) return type.substr(prefix.size());
  }
  return type;
}

/// The activity of a workout: "HKWorkoutActivityTypeRunning" becomes "Running".
constexpr std::string_view ofActivity(std::string_view type) {
  constexpr std::string_view prefix = "HKWorkoutActivityType";
  return type.starts_with(prefix) ? type.substr(prefix.size()) : type;
}

}  // namespace TypeNames
