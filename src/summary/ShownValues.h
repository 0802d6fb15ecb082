#pragma once
// Values as people are shown them: their unit, their decimals, their mean.

#include "platform/Locale.h"
#include "summary/DailyValue.h"
#include "summary/Metrics.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// A number as every text shows it: from 1000 on a grouped whole number, below with as many
/// decimals as matter (one from 100 on, two from 1 on, else three), without zeros at the end.
/// "inf", "-inf" or "nan" when it is not finite.
std::string fmt(double value, const DigitGrouping& grouping);

/// A value stored in `unit` as it is shown: percentages are stored as fractions.
double shown(double stored, std::string_view unit);

/// The metric's series, in the unit it is stored in, as it is shown.
std::vector<DailyValue> shown(std::vector<DailyValue> series, HealthMetric metric);

/// Mean of a series that is not empty.
double mean(std::span<const DailyValue> series);
