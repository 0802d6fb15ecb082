#pragma once
// The night after a day.

#include "sample/life/Day.h"
#include "sample/life/Sample.h"

/// Passes on the night: sleep stages from the watch and the time in bed from the phone. Sometimes,
/// and always without a watch, the phone adds its own estimate, which overlaps the stages. If the
/// phone does not record sleep, the watch records the time in bed, and there is no estimate.
void tellNight(const Day& day, RecordSink& sink);
