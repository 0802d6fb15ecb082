#pragma once
// Measurements that occur once or a few times a day, or rarely.

#include "sample/life/Day.h"
#include "sample/life/Sample.h"

/// Passes on the day's measurements other than movement, pulse, sleep, weighing and training.
void tellMeasurements(const Day& day, RecordSink& sink);
