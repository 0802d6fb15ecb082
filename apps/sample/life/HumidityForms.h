#pragma once
// The forms of a workout's humidity in databases over the years.

#include "sample/life/Sample.h"
#include "workouts/Workouts.h"

#include <optional>
#include <span>

/// One form: a separate reading, the old percentage column, both, or nothing.
struct HumidityForm {
  std::optional<WorkoutHumidity> reading;
  std::optional<double> column;
};

/// All forms; every status of WorkoutHumidity occurs among them.
std::span<const HumidityForm> humidityForms();

/// The workout's humidity as the Health app exports it, in hundredths of a percent: "5500" for 55
/// percent. Absent without a number. The export does not preserve the form in the database.
std::optional<Decimal> exportedHumidity(const WorkoutEntry& workout);
