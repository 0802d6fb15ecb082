#pragma once
// The night that follows a day.

#include "sample/life/Day.h"
#include "sample/life/Sample.h"

/// Tells the night: its stages from the watch, the time in bed from the phone, and now and then
/// (always without a watch) the phone's own guess at the sleep, which overlaps the stages. Where
/// the phone does not notice sleep, the watch tells the time in bed too, and nobody guesses.
void tellNight(const Day& day, RecordSink& sink);
