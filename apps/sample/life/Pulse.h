#pragma once
// The heart rate outside training, which a watch measures every few minutes.

#include "sample/life/Day.h"
#include "sample/life/Sample.h"

/// Passes on the day's heart rate, asleep and awake. It has gaps while the watch charges and during
/// a session; the training has the session's samples.
void tellPulse(const Day& day, RecordSink& sink);
