// Daily values of a metric, and the smaller questions that the summary asks of one type.

#include "platform/Text.h"
#include "store/HealthStore.h"
#include "store/Queries.h"

#include <algorithm>
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

/// The days of a type in a range that have a record, ascending. Each is found by one seek into the
/// index on type and day.
class DayWalk {
public:
  /// `earliest` selects the first day of a type between two.
  DayWalk(Statement earliest, std::string_view type, std::string_view from, std::string_view to)
      : earliest(std::move(earliest)), least(from) {
    this->earliest.bind(1, type).bind(3, to);
  }

  /// The next day; `nullopt` after the last, or once the walk is lost.
  std::optional<std::string> next() {
    earliest.reset();
    earliest.bind(2, least);
    const std::optional<Row> row = earliest.next();
    if (!row || row->isNull(0)) return std::nullopt;
    std::string day(row->bytes(0));
    lost = day < least || repaired(day) != day;
    if (lost) return std::nullopt;
    least = day + '\0';  // the first text after it
    return day;
  }

  /// Whether there was a day that broken bytes or another order of texts put out of order. The walk
  /// ends there, because it could lead round in a circle.
  bool isLost() const { return lost; }

private:
  Statement earliest;
  std::string least;
  bool lost = false;
};

constexpr const char* earliestDay =
    "SELECT MIN(start_day) FROM records INDEXED BY ix_rec_type_day\n"
    "WHERE type=? AND start_day BETWEEN ? AND ?";

}  // namespace

std::map<std::string, double> HealthStore::dailyTotals(std::string_view type, std::string_view from,
                                                       std::string_view to) const {
  // Day by day, so that SQLite sorts a day's rows by their sources and not those of all years.
  std::optional<Statement> earliest = prepareIfPossible(earliestDay);
  std::optional<Statement> sums = prepareIfPossible(
      "SELECT SUM(value_num) FROM records INDEXED BY ix_rec_type_day\n"
      "WHERE type=? AND start_day=? AND " +
      Queries::hasNumber + " GROUP BY source_name");
  if (!earliest || !sums) return dailyTotalsInOnePass(type, from, to);
  sums->bind(1, type);
  DayWalk days(std::move(*earliest), type, from, to);
  std::map<std::string, double> totals;
  while (const std::optional<std::string> day = days.next()) {
    sums->reset();
    sums->bind(2, *day);
    while (const std::optional<Row> row = sums->next()) {
      const std::optional<double> sum = row->find<double>(0);
      if (!sum) continue;
      double& total = totals[*day];  // 0 at first
      total = std::max(total, *sum);
    }
  }
  return days.isLost() ? dailyTotalsInOnePass(type, from, to) : totals;
}

std::vector<DailyValue> HealthStore::medianSeries(std::string_view type, std::string_view from,
                                                  std::string_view to) const {
  // Day by day: a type can have a million samples, and reading the day of each would cost as much
  // as reading their values.
  std::optional<Statement> earliest = prepareIfPossible(earliestDay);
  std::optional<Statement> ofDay = prepareIfPossible(
      "SELECT value_num FROM records INDEXED BY ix_rec_type_day WHERE type=? AND start_day=?");
  if (!earliest || !ofDay) return medianSeriesInOnePass(type, from, to);
  ofDay->bind(1, type);
  DayWalk days(std::move(*earliest), type, from, to);
  std::vector<DailyValue> series;
  std::vector<double> values;
  while (const std::optional<std::string> day = days.next()) {
    ofDay->reset();
    ofDay->bind(2, *day);
    values.clear();
    while (const std::optional<Row> row = ofDay->next()) {
      if (const std::optional<double> value = row->find<double>(0)) values.push_back(*value);
    }
    if (const std::optional<double> middle = median(values)) series.push_back({*day, *middle});
  }
  return days.isLost() ? medianSeriesInOnePass(type, from, to) : series;
}

// A file from before the index on type and day, or one that lost it, would be read from end to end
// for every single day.

std::map<std::string, double> HealthStore::dailyTotalsInOnePass(std::string_view type,
                                                                std::string_view from,
                                                                std::string_view to) const {
  Statement query = prepare(
      "SELECT start_day, SUM(value_num) FROM records\n"
      "WHERE type=? AND start_day BETWEEN ? AND ? AND " +
      Queries::hasNumber + "\nGROUP BY start_day, source_name");
  query.bind(1, type).bind(2, from).bind(3, to);
  std::map<std::string, double> totals;
  while (const std::optional<Row> row = query.next()) {
    const std::optional<double> sum = row->find<double>(1);
    if (!sum) continue;
    double& total = totals[row->text(0)];
    total = std::max(total, *sum);
  }
  return totals;
}

std::vector<DailyValue> HealthStore::medianSeriesInOnePass(std::string_view type,
                                                           std::string_view from,
                                                           std::string_view to) const {
  Statement query = prepare(
      "SELECT start_day, value_num FROM records WHERE type=? AND start_day BETWEEN ? AND ?");
  query.bind(1, type).bind(2, from).bind(3, to);
  std::map<std::string, std::vector<double>> days;
  while (const std::optional<Row> row = query.next()) {
    if (const std::optional<double> value = row->find<double>(1)) {
      days[row->text(0)].push_back(*value);
    }
  }
  std::vector<DailyValue> series;
  series.reserve(days.size());
  for (auto& [day, values] : days) series.push_back({day, median(values).value()});
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
  SleepTally tally;
  Statement query = selectSleep(from, to);
  while (const std::optional<Row> row = query.next()) tally.add(segmentOf(*row));
  std::vector<DailyValue> series;
  for (const SleepNight& night : tally.nights()) series.push_back({night.day, night.minutes});
  return series;
}
