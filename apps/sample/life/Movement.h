#pragma once
// What accumulates over a day: steps, distance, energy, flights of stairs, minutes.

#include "sample/life/Day.h"
#include "sample/life/Sample.h"

/// Tells the day's movement as watch and phone noticed it, each on its own: their samples overlap
/// and their totals differ, as two witnesses of the same walk do.
void tellMovement(const Day& day, RecordSink& sink);
