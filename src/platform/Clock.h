#pragma once
// The time as the program reads it: injected, so that tests fix it.

#include <functional>

/// The present, in seconds since 1970-01-01 00:00 UTC, with fractions: the form in which the roster
/// and the summaries keep every moment.
using Clock = std::function<double()>;

/// The machine's own clock.
double systemTime();
