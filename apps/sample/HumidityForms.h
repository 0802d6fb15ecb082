#pragma once
// The ways in which a workout's humidity has reached databases over the years.

#include "workouts/Workouts.h"

#include <optional>
#include <span>

/// One way: a reading of its own, the old percentage column, both, or nothing.
struct HumidityForm {
  std::optional<WorkoutHumidity> reading;
  std::optional<double> column;
};

/// Every way there is, each status of WorkoutHumidity among them.
std::span<const HumidityForm> humidityForms();
