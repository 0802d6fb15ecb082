#pragma once
// What the texts of all tools share: heading, numbers, the metric's line, the coverage notice.

#include "mcp/tools/Tools.h"
#include "platform/Locale.h"
#include "platform/SummaryLang.h"
#include "roster/Roster.h"
#include "store/HealthStore.h"
#include "summary/Metrics.h"

#include <string>
#include <string_view>
#include <vector>

namespace Tools {

/// The first line of every answer about a member: display name and id.
std::string header(const Member& member, SummaryLang lang);

/// The days that an answer is about.
std::string rangeLine(std::string_view from, std::string_view to, SummaryLang lang);

/// A number as every tool shows it: from 1000 on a grouped whole number, below with as many
/// decimals as matter (one from 100 on, two from 1 on, else three), without zeros at the end.
/// "inf", "-inf" or "nan" when it is not finite.
std::string fmt(double value, const DigitGrouping& grouping);

/// Whole days from `first` to `last`, "yyyy-MM-dd" both; 0 when one is no day.
int daysBetween(std::string_view first, std::string_view last);

/// The line that names a metric, its unit and how a day is made of its records. The last is said in
/// Chinese in both languages.
std::string metricLine(HealthMetric metric, SummaryLang lang);

/// The metric's series as a tool shows it: what the store keeps as a fraction becomes percent.
std::vector<DailyValue> shownSeries(const HealthStore& store, HealthMetric metric,
                                    std::string_view from, std::string_view to);

/// Mean of a series that is not empty.
double mean(const std::vector<DailyValue>& series);

/// The notice of what data the store holds and what a gap means. A history of fewer than 400 days
/// counts as still coming in. Throws ReceiverError.
std::string coverageOf(const HealthStore& store, const Call& call);

}  // namespace Tools
