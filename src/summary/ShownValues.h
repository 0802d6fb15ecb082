#pragma once
// Values for display: their unit, their decimals, their mean.

#include "platform/Locale.h"
#include "summary/DailyValue.h"
#include "summary/Metrics.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The text of a number in all answers. From 1000 on it is a grouped whole number. Below, it has
/// one decimal from 100 on, two from 1 on, otherwise three, without trailing zeros. "inf", "-inf"
/// or "nan" when it is not finite.
std::string fmt(double value, const DigitGrouping& grouping);

/// A value in its displayed unit. Percentages are stored as fractions.
double shown(double stored, std::string_view unit);

/// The metric's series, converted from its stored to its displayed unit.
std::vector<DailyValue> shown(std::vector<DailyValue> series, HealthMetric metric);

/// Mean of a non-empty series.
double mean(std::span<const DailyValue> series);
