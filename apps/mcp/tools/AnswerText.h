#pragma once
// Text that all tools share: heading, numbers, the metric's line, the coverage notice.

#include "mcp/tools/Tools.h"
#include "platform/AppleFormat.h"
#include "platform/SummaryLang.h"
#include "roster/Roster.h"
#include "store/HealthStore.h"
#include "summary/Metrics.h"
#include "summary/ShownValues.h"

#include <string>
#include <string_view>

namespace Tools {

/// The first line of every answer about a member: display name and id.
std::string header(const Member& member, SummaryLang lang);

/// The line with the range of days of an answer.
std::string rangeLine(std::string_view from, std::string_view to, SummaryLang lang);

/// A number in the form of ::fmt, with the digit grouping of the call.
inline std::string fmt(double value, const Call& call) { return ::fmt(value, call.grouping); }

using AppleFormat::daysBetween;

/// The line with a metric's name, its unit and the computation of a day's value. The last is in
/// Chinese in both languages.
std::string metricLine(HealthMetric metric, SummaryLang lang);

/// The coverage notice of the store: what data it has and what a gap means. A history of fewer than
/// 400 days counts as still coming in. Throws ReceiverError.
std::string coverageOf(const HealthStore& store, const Call& call);

}  // namespace Tools
