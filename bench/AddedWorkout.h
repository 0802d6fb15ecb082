#pragma once
// Workouts with more heart-rate samples than the sample household generates.

#include "platform/Logger.h"
#include "workouts/Workouts.h"

#include <string>

/// A workout that starts at 8:00, with a heart-rate sample every second until its end.
struct AddedWorkout {
  const char* activity;
  const char* day;  ///< "yyyy-MM-dd"
  int samples;

  /// The workout as an entry of a workout list.
  WorkoutEntry entry() const;

  /// Writes the workout and its samples into the database at `path`, unless it already contains
  /// them. Failures throw ReceiverError and leave the file unchanged.
  void addOnce(const std::string& path, Logger& log) const;
};

namespace AddedWorkouts {

/// An hour among the household's own days.
inline constexpr AddedWorkout hour{"Running", "2026-09-15", 3600};

/// Many times the size of the largest page. It has a year of its own, because it would distort a
/// trend.
inline constexpr AddedWorkout longest{"Hiking", "2010-06-01", 20000};

}  // namespace AddedWorkouts
