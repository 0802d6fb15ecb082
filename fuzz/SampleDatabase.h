#pragma once
// A member's database with data for every tool, small enough for mutation byte by byte.

#include "support/TestDatabase.h"

/// The identifier of the workout with heart-rate samples.
extern const char* const sampleWorkout;

/// Fills an empty database and packs it into small pages, without a write-ahead log.
void fillSample(TestDatabase& database);
