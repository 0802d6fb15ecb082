// Daily values, and the range and counts of all records.

#include "store/HealthStore.h"
#include "store/Queries.h"

#include <algorithm>

SummaryCoverage HealthStore::coverage() const {
  SummaryCoverage coverage;
  Statement count = prepare("SELECT COUNT(*) FROM records");
  if (const std::optional<Row> row = count.next()) {
    coverage.records = row->find<std::int64_t>(0).value_or(0);
  }
  Statement types =
      prepare(Queries::presentTypes +
              "SELECT (SELECT MIN(start_day) FROM records WHERE records.type = present.type),\n"
              "       (SELECT MAX(start_day) FROM records WHERE records.type = present.type)\n"
              "FROM present");
  std::optional<std::string> firstDay;
  std::optional<std::string> lastDay;
  while (const std::optional<Row> row = types.next()) {
    ++coverage.typeCount;
    const std::optional<std::string> first = row->find<std::string>(0);
    const std::optional<std::string> last = row->find<std::string>(1);
    if (first && (!firstDay || *first < *firstDay)) firstDay = first;
    if (last && (!lastDay || *last > *lastDay)) lastDay = last;
  }
  coverage.firstDay = firstDay.value_or("");
  coverage.lastDay = lastDay.value_or("");
  coverage.devices = sourceNames();
  return coverage;
}

namespace {

std::vector<std::string> nonEmptyTexts(Statement query) {
  std::vector<std::string> texts;
  while (const std::optional<Row> row = query.next()) {
    std::string text = row->text(0);
    if (!text.empty()) texts.push_back(std::move(text));
  }
  return texts;
}

}  // namespace

std::vector<std::string> HealthStore::sourceNames() const {
  std::vector<std::string> names;
  if (hasTable("stat_sources")) {
    names = nonEmptyTexts(
        prepare("SELECT source_name FROM stat_sources WHERE n > 0 ORDER BY last DESC"));
  }
  if (names.empty()) {
    names = nonEmptyTexts(prepare("SELECT DISTINCT source_name FROM records ORDER BY 1"));
  }
  return names;
}

std::set<std::string> HealthStore::presentTypes() const {
  Statement query = prepare(Queries::presentTypes + "SELECT type FROM present");
  std::set<std::string> types;
  while (const std::optional<Row> row = query.next()) types.insert(row->text(0));
  return types;
}

std::map<std::string, std::int64_t> HealthStore::yearlyCounts() const {
  // Counts by type and day come in one pass over the index and without touching the table; the
  // years are made of them. A condition on the day inside would be checked record by record.
  Statement query = prepare(
      "SELECT CASE WHEN length(day) >= 4 THEN substr(day, 1, 4) END AS y, SUM(n) FROM (\n"
      "  SELECT start_day AS day, COUNT(*) AS n FROM records GROUP BY type, start_day)\n"
      "GROUP BY y HAVING y IS NOT NULL");
  std::map<std::string, std::int64_t> counts;
  while (const std::optional<Row> row = query.next()) {
    counts[row->text(0)] += row->find<std::int64_t>(1).value_or(0);
  }
  return counts;
}

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
      for (const SleepNight& night : sleepNights(sleepSegments(from, to))) {
        series.push_back({night.day, night.minutes});
      }
      break;
  }
  return series;
}

std::map<std::string, double> HealthStore::dailyTotals(std::string_view type, std::string_view from,
                                                       std::string_view to) const {
  Statement query = prepare(
      "SELECT start_day, source_name, SUM(value_num) FROM records\n"
      "WHERE type=? AND start_day BETWEEN ? AND ? AND " +
      Queries::hasNumber +
      "\n"
      "GROUP BY 1, 2");
  query.bind(1, type).bind(2, from).bind(3, to);
  std::map<std::string, double> totals;
  while (const std::optional<Row> row = query.next()) {
    const std::optional<std::string> day = row->find<std::string>(0);
    const std::optional<double> sum = row->find<double>(2);
    if (!day || !sum) continue;
    double& total = totals[*day];  // 0 at first
    total = std::max(total, *sum);
  }
  return totals;
}

std::vector<DailyValue> HealthStore::medianSeries(std::string_view type, std::string_view from,
                                                  std::string_view to) const {
  Statement query = prepare(
      "SELECT start_day, value_num FROM records\n"
      "WHERE type=? AND start_day BETWEEN ? AND ? AND " +
      Queries::hasNumber +
      "\n"
      "ORDER BY start_day");
  query.bind(1, type).bind(2, from).bind(3, to);
  DailyMedians medians;
  while (const std::optional<Row> row = query.next()) {
    if (const std::optional<double> value = row->find<double>(1)) medians.add(row->text(0), *value);
  }
  return medians.finished();
}

std::vector<double> HealthStore::values(std::string_view type, std::string_view from,
                                        std::string_view to) const {
  Statement query = prepare(
      "SELECT value_num FROM records\n"
      "WHERE type=? AND start_day BETWEEN ? AND ? AND " +
      Queries::hasNumber);
  query.bind(1, type).bind(2, from).bind(3, to);
  std::vector<double> values;
  while (const std::optional<Row> row = query.next()) {
    if (const std::optional<double> value = row->find<double>(0)) values.push_back(*value);
  }
  return values;
}

std::optional<DatedValue> HealthStore::latestValue(std::string_view type) const {
  Statement query = prepare(
      "SELECT start_day, value_num FROM records\n"
      "WHERE type=? AND " +
      Queries::hasNumber +
      "\n"
      "ORDER BY start_date DESC LIMIT 1");
  query.bind(1, type);
  const std::optional<Row> row = query.next();
  if (!row) return std::nullopt;
  const std::optional<double> value = row->find<double>(1);
  if (!value) return std::nullopt;
  return DatedValue{row->text(0), *value};
}

std::vector<SleepSegment> HealthStore::sleepSegments(std::string_view from,
                                                     std::string_view to) const {
  Statement query = prepare(
      "SELECT start_date, end_date, value FROM records\n"
      "WHERE type='SleepAnalysis' AND start_day BETWEEN ? AND ?");
  query.bind(1, from).bind(2, to);
  return query.readAll([](const Row& row) {
    return SleepSegment{row.text(0), row.text(1), row.text(2)};
  });
}
