// All data of one day.

#include "platform/Text.h"
#include "store/HealthStore.h"
#include "store/QueryParts.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

namespace {

/// Cumulative types outside the catalogue of metrics.
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

/// The samples of one type and one source on the day.
struct SourceSum {
  double sum = 0;
  std::int64_t count = 0;
  std::int64_t firstRow = 0;
  std::string unit;  ///< of the first row
};

/// By type and source; records without a source name come first. Names are the stored bytes. Two
/// names that are repaired to the same text are still two sources, which overlap.
using SourceSums = std::map<std::pair<std::string, std::optional<std::string>>, SourceSum>;

/// One row per type.
std::vector<DayRow> rowsOf(const SourceSums& sums) {
  std::vector<DayRow> rows;
  const std::string* lastType = nullptr;
  for (const auto& [key, source] : sums) {
    const std::string& type = key.first;
    if (lastType == nullptr || *lastType != type) {
      rows.push_back({repaired(type), source.sum, source.count, source.unit});
      lastType = &type;
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
  // No index starts with the day, so a query by day alone would read the whole table. With the type
  // first, the index on type and day finds the day's rows.
  Statement query = prepare(
      Queries::presentTypes +
      "SELECT present.type, source_name, value_num, unit, records.rowid\n"
      "FROM present CROSS JOIN records ON records.type = present.type AND records.start_day = ?");
  query.bind(1, day);
  SourceSums sums;
  while (const std::optional<Row> row = query.next()) {
    const std::optional<double> value = Queries::valueIn(*row, 2);
    if (!value) continue;
    const std::optional<std::string_view> name = row->find<std::string_view>(1);
    SourceSum& source =
        sums[{std::string(row->bytes(0)), name ? std::optional(std::string(*name)) : std::nullopt}];
    source.sum += *value;
    ++source.count;
    const std::int64_t number = row->find<std::int64_t>(4).value_or(0);
    if (source.count > 1 && number >= source.firstRow) continue;
    source.firstRow = number;
    source.unit = row->text(3);
  }
  return rowsOf(sums);
}
