// One day in full.

#include "store/HealthStore.h"
#include "store/Queries.h"

#include <algorithm>
#include <array>
#include <limits>
#include <map>
#include <utility>

namespace {

/// Types outside the catalogue of metrics whose values add up over a day.
constexpr std::array<std::string_view, 15> cumulativeTypes{"BasalEnergyBurned",
                                                           "FlightsClimbed",
                                                           "TimeInDaylight",
                                                           "DistanceCycling",
                                                           "DistanceSwimming",
                                                           "DistanceWheelchair",
                                                           "DistanceDownhillSnowSports",
                                                           "SwimmingStrokeCount",
                                                           "PushCount",
                                                           "NikeFuel",
                                                           "AppleMoveTime",
                                                           "DietaryWater",
                                                           "DietaryEnergyConsumed",
                                                           "NumberOfTimesFallen",
                                                           "PhysicalEffort"};

bool addsUp(std::string_view type) {
  const auto isMetric = [type](const MetricInfo& row) {
    return row.storeType == type && row.aggregation == Aggregation::cumulative;
  };
  return std::ranges::any_of(metricTable, isMetric) ||
         std::ranges::find(cumulativeTypes, type) != cumulativeTypes.end();
}

/// The samples of one type and source on the day.
struct SourceSum {
  double sum = 0;
  std::int64_t count = 0;
  std::int64_t firstRow = std::numeric_limits<std::int64_t>::max();
  std::string unit;  ///< of the first row
};

/// By type and source, those without a name first.
using SourceSums = std::map<std::pair<std::string, std::optional<std::string>>, SourceSum>;

/// One row for each type.
std::vector<DayRow> rowsOf(const SourceSums& sums) {
  std::vector<DayRow> rows;
  for (const auto& [key, source] : sums) {
    const std::string& type = key.first;
    if (rows.empty() || rows.back().type != type) {
      rows.push_back({type, source.sum, source.count, source.unit});
      continue;
    }
    DayRow& row = rows.back();
    row.value = addsUp(type) ? std::max(row.value, source.sum) : row.value + source.sum;
    row.samples += source.count;
  }
  for (DayRow& row : rows) {
    if (!addsUp(row.type)) row.value /= static_cast<double>(row.samples);
  }
  return rows;
}

}  // namespace

std::vector<DayRow> HealthStore::dayDetail(std::string_view day) const {
  // No index begins with the day, so a query for the day alone reads the whole table. Type by type,
  // the index on type and day leads to the day's rows.
  Statement query = prepare(
      Queries::presentTypes +
      "SELECT present.type, source_name, value_num, unit, records.rowid\n"
      "FROM present CROSS JOIN records ON records.type = present.type AND records.start_day = ?");
  query.bind(1, day);
  SourceSums sums;
  while (const std::optional<Row> row = query.next()) {
    const std::optional<double> value = Queries::valueIn(*row, 2);
    if (!value) continue;
    SourceSum& source = sums[{row->text(0), row->find<std::string>(1)}];
    source.sum += *value;
    ++source.count;
    const std::int64_t number = row->find<std::int64_t>(4).value_or(0);
    if (number >= source.firstRow) continue;
    source.firstRow = number;
    source.unit = row->text(3);
  }
  return rowsOf(sums);
}
