// One day in full.

#include "store/HealthStore.h"
#include "store/Queries.h"

#include <algorithm>
#include <array>
#include <limits>
#include <span>
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
  std::string type;
  std::string unit;
  std::int64_t count;
  double sum;
};

/// What SQLite has no word for: the sum of infinities of both signs is NULL there.
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// One row out of the sums of a type's sources, at least one.
DayRow dayRow(std::span<const SourceSum> sources) {
  const SourceSum& first = sources.front();
  DayRow row{.type = first.type, .value = 0, .samples = 0, .unit = first.unit};
  double total = 0;
  double largest = first.sum;
  for (const SourceSum& source : sources) {
    total += source.sum;
    largest = std::max(largest, source.sum);
    row.samples += source.count;
  }
  row.value = addsUp(row.type) ? largest : total / static_cast<double>(row.samples);
  return row;
}

/// The sums of each type and source on a day. MIN(rowid) makes the unit that of the source's first
/// row.
std::string rowsOfDay(const std::string& index) {
  return Queries::presentTypes +
         "SELECT present.type, unit, COUNT(*), SUM(value_num), MIN(records.rowid)\n"
         "FROM present CROSS JOIN records" +
         index + " ON records.type = present.type AND records.start_day = ?\nWHERE " +
         Queries::hasNumber + "\nGROUP BY present.type, +source_name";
}

}  // namespace

std::vector<DayRow> HealthStore::dayDetail(std::string_view day) const {
  // No index begins with the day, so a query for the day alone reads the whole table. Type by type,
  // the index on type and day leads to the day's rows. A file that lost it is read in some other
  // way.
  std::optional<Statement> indexed = prepareIfPossible(rowsOfDay(" INDEXED BY ix_rec_type_day"));
  Statement query = indexed ? std::move(*indexed) : prepare(rowsOfDay(""));
  query.bind(1, day);
  const std::vector<SourceSum> sums = query.readAll([](const Row& row) {
    return SourceSum{row.text(0),
                     row.text(1),
                     row.find<std::int64_t>(2).value_or(0),
                     row.find<double>(3).value_or(notANumber)};
  });
  std::vector<DayRow> rows;
  for (auto begin = sums.begin(); begin != sums.end();) {
    const auto end = std::find_if(
        begin, sums.end(), [begin](const SourceSum& sum) { return sum.type != begin->type; });
    rows.push_back(dayRow({begin, end}));
    begin = end;
  }
  std::ranges::stable_sort(rows, {}, &DayRow::type);
  return rows;
}
