#pragma once
// Stepping on the scale: several types from one moment and one weight.

#include "sample/life/Day.h"
#include "sample/life/Sample.h"

/// Tells the morning's weighing, on the days that have one. In the first third of the history the
/// old scale knows the weight alone, and its importer left many calendar days out.
void tellWeighing(const Day& day, RecordSink& sink);
