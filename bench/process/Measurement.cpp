#include "bench/process/Measurement.h"
#include "platform/JsonFields.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>

double middle(std::vector<double> values) {
  const auto position = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::ranges::nth_element(values, position);
  return *position;
}

void to_json(nlohmann::ordered_json& json, const Measurement& measurement) {
  using JsonFields::orNull;
  json = {{"what", measurement.what},
          {"ours", measurement.ours},
          {"floor", orNull(measurement.floor)},
          {"target", orNull(measurement.target)},
          {"unit", measurement.unit}};
  if (const std::optional<Elapsed>& elapsed = measurement.elapsed) {
    json["elapsed"] = {{"ours", elapsed->ours}, {"floor", elapsed->floor}};
  }
}
