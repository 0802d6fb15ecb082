#pragma once
// Observations at the end of a summary.

#include "summary/SummaryEngine.h"
#include "summary/SummaryModel.h"

#include <vector>

namespace Insights {

/// The observations that the data supports, in this order: "weekday" (most and least active day of
/// the week), "resting_hr" (compared with last year), "best_month" (the month with the most steps).
/// An observation without sufficient or readable data is omitted.
std::vector<Insight> all(const SummaryEngine& engine);

}  // namespace Insights
