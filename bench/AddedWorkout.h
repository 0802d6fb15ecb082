#pragma once
// Workouts with more heart-rate samples than the sample household ever takes.

#include "platform/Logger.h"
#include "workouts/Workouts.h"

#include <string>

/// A workout from eight in the morning on, with a heart-rate sample every second to its end.
struct AddedWorkout {
  const char* activity;
  const char* day;  ///< "yyyy-MM-dd"
  int samples;

  /// The workout as a list of workouts shows it.
  WorkoutEntry entry() const;

  /// Writes the workout and its samples into the database at `path`, unless it has them already.
  /// Failures leave as ReceiverError and leave the file as it was.
  void addOnce(const std::string& path, Logger& log) const;
};

namespace AddedWorkouts {

/// An hour among the household's own days.
inline constexpr AddedWorkout hour{"Running", "2026-09-15", 3600};

/// Many times the largest page, in a year of its own: it would weigh too much in a trend.
inline constexpr AddedWorkout longest{"Hiking", "2010-06-01", 20000};

}  // namespace AddedWorkouts
