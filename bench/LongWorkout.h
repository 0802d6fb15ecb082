#pragma once
// A workout with more heart-rate samples than the sample household ever takes.

#include "platform/Logger.h"
#include "workouts/Workouts.h"

#include <string>

namespace LongWorkout {

/// How many samples it has, one a second.
inline constexpr int samples = 20000;

/// The workout as a list of workouts shows it.
WorkoutEntry entry();

/// Writes the workout and its samples into the database at `path`, unless it has them already.
/// Failures leave as ReceiverError and leave the file as it was.
void addOnce(const std::string& path, Logger& log);

}  // namespace LongWorkout
