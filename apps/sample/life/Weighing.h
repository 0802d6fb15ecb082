#pragma once
// Weighing: several types of the same moment and the same weight.

#include "sample/life/Day.h"
#include "sample/life/Sample.h"

/// Passes on the morning's weighing, on days with one. In the first third of the history the old
/// scale measures only the weight, and its importer omitted many calendar days.
void tellWeighing(const Day& day, RecordSink& sink);
