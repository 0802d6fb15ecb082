#pragma once
// One workout, and heart-rate samples around it, as database rows.

#include "support/TestDatabase.h"
#include "workouts/Workouts.h"

#include <string>

/// The stamp `seconds` after 08:00:00 UTC on 1 March 2024; it must be on that day.
inline std::string stampAfter(int seconds) {
  const auto twoDigits = [](int number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
  };
  const int secondOfDay = 8 * 3600 + seconds;
  return "2024-03-01 " + twoDigits(secondOfDay / 3600) + ":" + twoDigits(secondOfDay / 60 % 60) +
         ":" + twoDigits(secondOfDay % 60) + " +0000";
}

/// A run of one hour from stampAfter(0) on, recorded by "Watch".
inline TestWorkout hourOfRunning() {
  return {.duration_min = 60, .start_date = stampAfter(0), .end_date = stampAfter(3600)};
}

/// A sample that starts `seconds` after the run's start, recorded by "Watch".
inline TestRecord sampleAfter(int seconds, double bpm = 60) {
  return {.type = "HeartRate",
          .unit = "count/min",
          .start_date = stampAfter(seconds),
          .value_num = bpm};
}

/// The identifier of the workout in this row, which must have a start of its own.
inline std::string identifierOf(const TestWorkout& row) {
  WorkoutEntry workout;
  workout.activity_type = row.activity_type.value_or("");
  workout.source = row.source_name.value_or("");
  workout.start = row.start_date.value();
  workout.end = row.end_date.value_or("");
  return workout.workout_id();
}
