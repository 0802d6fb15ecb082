#pragma once
// Observations that a summary ends with.

#include "summary/SummaryEngine.h"
#include "summary/SummaryModel.h"

#include <vector>

namespace Insights {

/// The observations that the data supports, in this order: "weekday" (most and least active day of
/// the week), "resting_hr" (against last year), "best_month" (the month with the most steps). One
/// whose data does not suffice, or cannot be read, is left out.
std::vector<Insight> all(const SummaryEngine& engine);

}  // namespace Insights
