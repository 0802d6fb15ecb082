#pragma once
// The heart between trainings, as a watch checks it every few minutes.

#include "sample/life/Day.h"
#include "sample/life/Sample.h"

/// Tells the day's heart rate, asleep and awake, except while the watch charges and during a
/// session: that is told with the training.
void tellPulse(const Day& day, RecordSink& sink);
