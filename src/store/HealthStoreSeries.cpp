// Daily values, and the range and counts of all records.

#include "platform/ControlProtocol.h"
#include "platform/Text.h"
#include "store/HealthStore.h"
#include "store/Queries.h"

#include <algorithm>
#include <cstddef>

std::int64_t HealthStore::recordCount() const {
  if (countedRecords) return *countedRecords;
  Statement query = prepare("SELECT COUNT(*) FROM records");
  const std::optional<Row> row = query.next();
  return row ? row->find<std::int64_t>(0).value_or(0) : 0;
}

SummaryCoverage HealthStore::coverage() const {
  SummaryCoverage coverage;
  coverage.records = recordCount();
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
    names = nonEmptyTexts(
        prepare(Queries::presentSources + "SELECT DISTINCT name FROM sources ORDER BY 1"));
  }
  return names;
}

std::set<std::string> HealthStore::presentTypes() const {
  Statement query = prepare(Queries::presentTypes + "SELECT type FROM present");
  std::set<std::string> types;
  while (const std::optional<Row> row = query.next()) types.insert(row->text(0));
  return types;
}

namespace {

/// The first four characters of a day, "" for a shorter one; `nullopt` when it takes SQLite to tell
/// what its characters are.
std::optional<std::string_view> yearOf(std::string_view day) {
  constexpr std::size_t digits = 4;
  const std::string_view year = day.substr(0, digits);
  const auto isPlain = [](char byte) { return static_cast<signed char>(byte) > 0; };
  if (!std::ranges::all_of(year, isPlain)) return std::nullopt;
  return year.size() == digits ? year : std::string_view();
}

std::map<std::string, std::int64_t> countsByAnyYear(const HealthStore& store) {
  Statement query = store.prepare(
      "SELECT substr(start_day, 1, 4) AS y, COUNT(*) FROM records\n"
      "WHERE start_day IS NOT NULL AND length(start_day) >= 4\n"
      "GROUP BY y ORDER BY y");
  std::map<std::string, std::int64_t> counts;
  while (const std::optional<Row> row = query.next()) {
    counts[row->text(0)] += row->find<std::int64_t>(1).value_or(0);
  }
  return counts;
}

}  // namespace

std::map<std::string, std::int64_t> HealthStore::yearlyCounts() const {
  // Counts by type and day come in one pass over the index and without touching the table. The
  // years are made of them here: a year inside the query would be computed record by record.
  Statement query = prepare("SELECT start_day, COUNT(*) FROM records GROUP BY type, start_day");
  std::map<std::string, std::int64_t> counts;
  std::int64_t all = 0;
  auto latest = counts.end();
  while (const std::optional<Row> row = query.next()) {
    const std::int64_t count = row->find<std::int64_t>(1).value_or(0);
    all += count;
    const std::optional<std::string_view> year = yearOf(row->bytes(0));
    if (!year) return countsByAnyYear(*this);
    if (year->empty()) continue;
    if (latest == counts.end() || latest->first != *year) {
      latest = counts.try_emplace(std::string(*year)).first;
    }
    latest->second += count;
  }
  if (seesOneState) countedRecords = all;
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

namespace {

/// The days of a type in a range that have a record, ascending. Each is found by one seek.
class DayWalk {
public:
  DayWalk(const HealthStore& store, std::string_view type, std::string_view from,
          std::string_view to)
      : earliest(store.prepare(
            "SELECT MIN(start_day) FROM records WHERE type=? AND start_day BETWEEN ? AND ?")),
        least(from) {
    earliest.bind(1, type).bind(3, to);
  }

  /// The next day, as it is stored; `nullopt` after the last.
  std::optional<std::string> next() {
    earliest.reset();
    earliest.bind(2, least);
    const std::optional<Row> row = earliest.next();
    if (!row || row->isNull(0)) return std::nullopt;
    std::string day(row->bytes(0));
    // An index in disorder could lead round in a circle.
    if (day < least) throw ReceiverError("读取失败:database disk image is malformed");
    least = day + '\0';  // the first text after it
    return day;
  }

private:
  Statement earliest;
  std::string least;
};

}  // namespace

std::map<std::string, double> HealthStore::dailyTotals(std::string_view type, std::string_view from,
                                                       std::string_view to) const {
  // Day by day, so that SQLite sorts a day's rows by their sources and not those of all years. The
  // "+" keeps the planner from walking the type's rows in the order of their sources instead.
  Statement sums = prepare("SELECT SUM(value_num) FROM records WHERE type=? AND start_day=? AND " +
                           Queries::hasNumber + " GROUP BY +source_name");
  sums.bind(1, type);
  DayWalk days(*this, type, from, to);
  std::map<std::string, double> totals;
  while (const std::optional<std::string> day = days.next()) {
    sums.reset();
    sums.bind(2, *day);
    while (const std::optional<Row> row = sums.next()) {
      const std::optional<double> sum = row->find<double>(0);
      if (!sum) continue;
      double& total = totals[repaired(*day)];  // 0 at first
      total = std::max(total, *sum);
    }
  }
  return totals;
}

std::vector<DailyValue> HealthStore::medianSeries(std::string_view type, std::string_view from,
                                                  std::string_view to) const {
  // Day by day: a type can have a million samples, and reading the day of each would cost as much
  // as reading their values.
  Statement ofDay = prepare("SELECT value_num FROM records WHERE type=? AND start_day=?");
  ofDay.bind(1, type);
  DayWalk days(*this, type, from, to);
  std::vector<DailyValue> series;
  std::vector<double> values;
  while (const std::optional<std::string> day = days.next()) {
    ofDay.reset();
    ofDay.bind(2, *day);
    values.clear();
    while (const std::optional<Row> row = ofDay.next()) {
      if (const std::optional<double> value = row->find<double>(0)) values.push_back(*value);
    }
    if (const std::optional<double> middle = median(values)) {
      series.push_back({repaired(*day), *middle});
    }
  }
  return series;
}

std::vector<double> HealthStore::values(std::string_view type, std::string_view from,
                                        std::string_view to) const {
  Statement query =
      prepare("SELECT value_num FROM records WHERE type=? AND start_day BETWEEN ? AND ?");
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
