#pragma once
// Cumulative values of a day: steps, distance, energy, flights of stairs, minutes.

#include "sample/life/Day.h"
#include "sample/life/Sample.h"

/// Passes on the day's movement as watch and phone record it independently. Their samples overlap
/// and their totals differ.
void tellMovement(const Day& day, RecordSink& sink);
