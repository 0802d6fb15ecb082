// The humidity reading; the input is the JSON text from a phone.

#include "Target.h"
#include "workouts/Workouts.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

namespace {

constexpr std::array<std::string_view, 6> statuses{"valid",
                                                   "out_of_range",
                                                   "invalid_value",
                                                   "unrecognized_representation",
                                                   "legacy_unverified",
                                                   "unverified_scale"};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::optional<WorkoutHumidity> humidity = humidityIn(std::string(textOf(data, size)));
  if (!humidity) return 0;

  require(humidityIn(nlohmann::ordered_json(*humidity).dump()) == humidity,
          "a reading that is written out reads back the same");
  require(std::ranges::find(statuses, humidity->status()) != statuses.end(),
          "a reading has one of the known statuses");

  WorkoutEntry workout;
  workout.humidity = humidity;
  const std::optional<double> percent = workout.humidityPercent();
  require(percent.has_value() == (humidity->status() == "valid"),
          "exactly the valid readings are percentages");
  require(!percent || (*percent >= 0 && *percent <= 100), "a percentage is one");
  return 0;
}
