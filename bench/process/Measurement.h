#pragma once
// One line of the table of what was measured.

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>

/// A figure of the built server. JSON keys are the field names; what is absent is null.
struct Measurement {
  std::string what;
  double ours;
  std::optional<double> floor;   ///< the least there can be; absent where nothing bounds `ours`
  std::optional<double> target;  ///< how many times the floor, or how much without one
  std::string unit;              ///< of `ours` and `floor`
};

void to_json(nlohmann::ordered_json& json, const Measurement& measurement);
