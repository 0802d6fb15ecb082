#include "summary/ShownValues.h"
#include "platform/Text.h"

#include <cmath>

namespace {

/// "12.50" as "12.5", "12.00" as "12".
void dropTrailingZeros(std::string& text) {
  if (text.find('.') == std::string::npos) return;
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
}

}  // namespace

std::string fmt(double value, const DigitGrouping& grouping) {
  const double magnitude = std::abs(value);
  if (!(magnitude < 1000)) return groupedWhole(value, grouping);
  const int decimals = magnitude >= 100 ? 1 : magnitude >= 1 ? 2 : 3;
  std::string text = fixedDecimals(value, decimals);
  dropTrailingZeros(text);
  return text == "-0" ? "0" : text;
}

double shown(double stored, std::string_view unit) { return unit == "%" ? stored * 100 : stored; }

std::vector<DailyValue> shown(std::vector<DailyValue> series, HealthMetric metric) {
  for (DailyValue& day : series) day.value = shown(day.value, infoOf(metric).unit);
  return series;
}

double mean(std::span<const DailyValue> series) {
  double sum = 0;
  for (const DailyValue& day : series) sum += day.value;
  return sum / static_cast<double>(series.size());
}
