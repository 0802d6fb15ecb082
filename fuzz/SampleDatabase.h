#pragma once
// A member's database with something for every tool, small enough to be mutated byte by byte.

#include "support/TestDatabase.h"

/// The identifier of the workout that has heart-rate samples.
extern const char* const sampleWorkout;

/// Fills an empty database and packs it into small pages, without a write-ahead log.
void fillSample(TestDatabase& database);
