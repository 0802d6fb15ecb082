#pragma once
// One row of the table of measurements.

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>
#include <vector>

/// The elapsed times; `ours` and `floor` are then processor times.
struct Elapsed {
  double ours;
  double floor;
};

/// A figure of a built program. JSON keys are the field names. An absent value is null, except that
/// an absent `elapsed` is omitted.
struct Measurement {
  std::string what;
  double ours;
  std::optional<double> floor;   ///< the lower bound; absent when there is none
  std::optional<double> target;  ///< maximum as a ratio to the floor; without a floor, in `unit`
  std::string unit;              ///< of all figures except `target`
  std::optional<Elapsed> elapsed = std::nullopt;
};

/// The median of `values`, or the upper one of the middle pair; `values` must not be empty.
double middle(std::vector<double> values);

void to_json(nlohmann::ordered_json& json, const Measurement& measurement);
