#pragma once
// One line of the table of what was measured.

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>
#include <vector>

/// What passed on the wall clock, where `ours` and `floor` are the processor's time.
struct Elapsed {
  double ours;
  double floor;
};

/// A figure of a built program. JSON keys are the field names; what is absent is null, but for
/// `elapsed`, which is left out.
struct Measurement {
  std::string what;
  double ours;
  std::optional<double> floor;   ///< the least there can be; absent where nothing bounds `ours`
  std::optional<double> target;  ///< how many times the floor, or how much without one
  std::string unit;              ///< of all figures but `target`
  std::optional<Elapsed> elapsed = std::nullopt;
};

/// The middle one of `values`, the upper one of two; there is at least one.
double middle(std::vector<double> values);

void to_json(nlohmann::ordered_json& json, const Measurement& measurement);
