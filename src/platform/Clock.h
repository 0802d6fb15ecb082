#pragma once
// The current time, injected so that tests can fix it.

#include <functional>

/// The present in seconds since 1970-01-01 00:00 UTC, with fractions. The roster and the summaries
/// keep every moment in this form.
using Clock = std::function<double()>;

/// The machine's own clock.
double systemTime();
