#include "process/Measurement.h"
#include "platform/JsonFields.h"

#include <nlohmann/json.hpp>

void to_json(nlohmann::ordered_json& json, const Measurement& measurement) {
  using JsonFields::orNull;
  json = {{"what", measurement.what},
          {"ours", measurement.ours},
          {"floor", orNull(measurement.floor)},
          {"target", orNull(measurement.target)},
          {"unit", measurement.unit}};
}
