#pragma once
// What is measured once or a few times a day, or once in a blue moon.

#include "sample/life/Day.h"
#include "sample/life/Sample.h"

/// Tells everything of the day that is neither counted up, nor pulse, sleep, scale or training.
void tellMeasurements(const Day& day, RecordSink& sink);
