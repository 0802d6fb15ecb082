#include "summary/Metrics.h"

#include <algorithm>

namespace {

constexpr bool inCatalogOrder() {
  for (std::size_t row = 0; row < metricTable.size(); ++row) {
    if (metricTable[row].metric != static_cast<HealthMetric>(row)) return false;
  }
  return true;
}
static_assert(inCatalogOrder(), "a metric's row is found by its number");

}  // namespace

const MetricInfo& infoOf(HealthMetric metric) {
  return metricTable[static_cast<std::size_t>(metric)];
}

std::optional<HealthMetric> metricNamed(std::string_view rawValue) {
  const auto row = std::ranges::find(metricTable, rawValue, &MetricInfo::rawValue);
  if (row == metricTable.end()) return std::nullopt;
  return row->metric;
}

std::string metricCatalog() {
  std::string catalog;
  for (const MetricInfo& row : metricTable) {
    if (!catalog.empty()) catalog += ", ";
    catalog += row.rawValue;
    catalog += '(';
    catalog += row.unit.empty() ? "无单位" : row.unit;
    catalog += ')';
  }
  return catalog;
}
