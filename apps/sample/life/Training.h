#pragma once
// A training session: its heart rates and its recorded workouts.

#include "sample/life/Day.h"
#include "sample/life/Sample.h"

/// Passes on the day's session, if there is one. The watch's heart rates are five seconds apart,
/// with a gap in which it lost the pulse; a chest strap's are sparser. Each recording source has
/// its own workout. Sources overlap, and their start times differ. A person without a watch gets
/// the bare workout of a running app.
void tellTraining(const Day& day, RecordSink& sink);
