#pragma once
// A session of training: what the heart did, and the workouts that were recorded of it.

#include "sample/life/Day.h"
#include "sample/life/Sample.h"

/// Tells the day's session, if it has one: the watch's heart rates every five seconds with a pause
/// in which it lost the pulse, a chest strap's sparser ones, and the workout of every source that
/// recorded one. Sources overlap, and disagree about when the session began. Who has no watch gets
/// the bare workout of a running app.
void tellTraining(const Day& day, RecordSink& sink);
