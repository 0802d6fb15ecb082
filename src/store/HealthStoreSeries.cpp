// Daily values of a metric, and the summary's smaller queries about one type.

#include "platform/Text.h"
#include "store/HealthStore.h"
#include "store/QueryParts.h"

#include <algorithm>
#include <functional>
#include <utility>

std::vector<DailyValue> HealthStore::series(HealthMetric metric, std::string_view from,
                                            std::string_view to) const {
  const MetricInfo& info = infoOf(metric);
  std::vector<DailyValue> series;
  switch (info.aggregation) {
    case Aggregation::cumulative:
      for (const auto& [day, total] : dailyTotals(info.storeType, from, to)) {
        series.push_back({day, total});
      }
      break;
    case Aggregation::median:
      series = medianSeries(info.storeType, from, to);
      break;
    case Aggregation::asleepPerNight:
      series = sleepSeries(from, to);
      break;
  }
  return series;
}

namespace {

/// Steps through `query`, whose first column is a day and whose rows are ordered by it. Calls
/// `read` for every row and `close` for every day after its last row.
template <typename Read, typename Close>
void readByDay(Statement query, Read read, Close close) {
  std::optional<std::string> day;
  while (const std::optional<Row> row = query.next()) {
    const std::string_view rowDay = row->bytes(0);
    if (rowDay != day) {
      if (day) close(*day);
      day = rowDay;
    }
    read(*row);
  }
  if (day) close(*day);
}

}  // namespace

std::map<std::string, double> HealthStore::dailyTotals(std::string_view type, std::string_view from,
                                                       std::string_view to) const {
  // Summed here, in the order of the index on type and day. If SQLite grouped by day and source, it
  // would sort the rows of all years, or use another index and read every row of the type.
  Statement query = prepare(
      "SELECT start_day, source_name, value_num FROM records\n"
      "WHERE type=? AND start_day BETWEEN ? AND ? ORDER BY start_day");
  query.bind(1, type).bind(2, from).bind(3, to);
  std::map<std::string, double> totals;
  std::map<std::optional<std::string>, double, std::less<>> sums;  // by source, for one day
  auto sum = sums.end();  // of the previous row: most rows have the same source
  readByDay(
      std::move(query),
      [&sums, &sum](const Row& row) {
        const std::optional<double> value = Queries::valueIn(row, 2);
        if (!value) return;
        const auto source = row.find<std::string_view>(1);
        if (sum == sums.end() || sum->first != source) sum = sums.find(source);
        if (sum == sums.end()) sum = sums.emplace(source, 0).first;
        sum->second += *value;
      },
      [&](const std::string& day) {
        for (const auto& [source, ofSource] : sums) {
          double& total = totals[repaired(day)];  // starts at 0
          total = std::max(total, ofSource);
        }
        sums.clear();
        sum = sums.end();
      });
  return totals;
}

std::vector<DailyValue> HealthStore::medianSeries(std::string_view type, std::string_view from,
                                                  std::string_view to) const {
  Statement query = prepare(
      "SELECT start_day, value_num FROM records\n"
      "WHERE type=? AND start_day BETWEEN ? AND ? ORDER BY start_day");
  query.bind(1, type).bind(2, from).bind(3, to);
  std::vector<DailyValue> series;
  const auto addMiddle = [&series](const std::string& day, std::vector<double>& values) {
    if (const std::optional<double> middle = median(values)) series.push_back({day, *middle});
    values.clear();
  };
  std::vector<double> values;  // of one day only: a type may have a million
  // Days with invalid bytes can be repaired to the same text without being neighbours.
  std::map<std::string, std::vector<double>> oddDays;
  readByDay(
      std::move(query),
      [&values](const Row& row) {
        if (const auto value = Queries::valueIn(row, 1)) values.push_back(*value);
      },
      [&](const std::string& day) {
        if (isASCII(day)) return addMiddle(day, values);
        std::vector<double>& ofDay = oddDays[repaired(day)];
        ofDay.insert(ofDay.end(), values.begin(), values.end());
        values.clear();
      });
  for (auto& [day, ofDay] : oddDays) addMiddle(day, ofDay);
  std::ranges::sort(series, {}, &DailyValue::day);
  return series;
}

std::vector<double> HealthStore::values(std::string_view type, std::string_view from,
                                        std::string_view to) const {
  Statement query =
      prepare("SELECT value_num FROM records WHERE type=? AND start_day BETWEEN ? AND ?");
  query.bind(1, type).bind(2, from).bind(3, to);
  std::vector<double> values;
  while (const std::optional<Row> row = query.next()) {
    if (const auto value = Queries::valueIn(*row, 0)) values.push_back(*value);
  }
  return values;
}

std::optional<DailyValue> HealthStore::latestValue(std::string_view type) const {
  // One seek finds the latest record of each source, because an index orders a source's records by
  // stamp. Otherwise all records of the type would be read and sorted.
  Statement query = prepare(filled(R"sql(
WITH RECURSIVE sources(name) AS (
  SELECT MIN(source_name) FROM records WHERE type = ?1
  UNION
  SELECT (SELECT MIN(source_name) FROM records WHERE type = ?1 AND source_name > name)
  FROM sources WHERE name IS NOT NULL)
SELECT start_day, value_num
FROM sources CROSS JOIN records ON records.rowid = (
  SELECT rowid FROM records WHERE type = ?1 AND source_name IS name AND {0}
  ORDER BY start_date DESC LIMIT 1)
ORDER BY start_date DESC LIMIT 1)sql",
                                   {Queries::hasValue}));
  query.bind(1, type);
  const std::optional<Row> row = query.next();
  const std::optional<double> value = row ? Queries::valueIn(*row, 1) : std::nullopt;
  if (!value) return std::nullopt;
  return DailyValue{row->text(0), *value};
}

Statement HealthStore::selectSleep(std::string_view from, std::string_view to) const {
  Statement query = prepare(
      "SELECT start_date, end_date, value FROM records\n"
      "WHERE type='SleepAnalysis' AND start_day BETWEEN ? AND ?");
  query.bind(1, from).bind(2, to);
  return query;
}

namespace {

SleepSegment segmentOf(const Row& row) { return {row.text(0), row.text(1), row.text(2)}; }

}  // namespace

std::vector<SleepSegment> HealthStore::sleepSegments(std::string_view from,
                                                     std::string_view to) const {
  return selectSleep(from, to).readAll(segmentOf);
}

std::vector<DailyValue> HealthStore::sleepSeries(std::string_view from, std::string_view to) const {
  SleepNights nights;
  Statement query = selectSleep(from, to);
  while (const std::optional<Row> row = query.next()) nights.add(segmentOf(*row));
  std::vector<DailyValue> series;
  for (const SleepNight& night : nights.inOrder()) series.push_back({night.day, night.minutes});
  return series;
}
