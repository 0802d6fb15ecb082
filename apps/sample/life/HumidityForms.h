#pragma once
// The ways in which a workout's humidity has reached databases over the years.

#include "sample/life/Sample.h"
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

/// The workout's humidity as the Health app exports it, in hundredths of a percent: "5500" for 55
/// percent. Absent without a number. What form it had in the database is lost on the way.
std::optional<Decimal> exportedHumidity(const WorkoutEntry& workout);
