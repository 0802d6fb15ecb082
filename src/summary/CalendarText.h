#pragma once
// Names of days and months, and the text of durations.

#include "platform/SummaryLang.h"

#include <cstdint>
#include <string>
#include <string_view>

/// Name of a weekday, 1 = Sunday to 7 = Saturday; other numbers are clamped to that range.
std::string_view weekdayName(int number, SummaryLang lang);

/// "2024-03" as "March 2024" or "2024 年 3 月". A month outside 1 to 12 is clamped; a text in
/// another form is returned unchanged.
std::string monthName(std::string_view yearMonth, SummaryLang lang);

/// A duration, "7h 5m" or "7 小时 5 分"; minutes only when `hours` is below 1.
std::string hoursMinutes(std::int64_t hours, std::int64_t minutes, SummaryLang lang);
