// The store asks SQLite for less than the plain statements do. On random records both say the same.

#include "platform/Text.h"
#include "store/HealthStore.h"
#include "store/SeriesRecords.h"
#include "summary/DailySeries.h"
#include "support/TestDatabase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr const char* first = "2019-03-05";
constexpr const char* last = "2022-11-17";

/// Random records of few days, so that days have several records of several sources.
class RandomRecords {
public:
  /// Every other seed has days that are not written as days.
  explicit RandomRecords(unsigned seed) : oddDays(seed % 2 == 0), random(seed) {}

  std::vector<TestRecord> some() {
    const std::vector<std::string> types{
        "StepCount", "HeartRate", "BodyMass", "DistanceWalkingRunning", "", "步数"};
    std::vector<TestRecord> records(below(600));
    for (TestRecord& record : records) {
      record.type = types[below(types.size())];
      record.source_name = source();
      record.start_date = day() + " 08:00:0" + std::to_string(below(10)) + " +0000";
      record.start_day = day();
      record.value_num = number();
      record.value = std::to_string(below(1000000));  // so that no two are the same record
      if (one(15)) record.start_day = std::nullopt;
      if (one(40)) record.start_day = "";
      if (one(40)) record.start_day = "202";
      if (oddDays && one(60)) record.start_day = "二〇二〇年";
    }
    return records;
  }

private:
  std::size_t below(std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
  }
  bool one(std::size_t in) { return below(in) == 0; }
  std::string day() {
    return std::to_string(2019 + below(4)) + (one(2) ? "-03-0" : "-11-1") +
           std::to_string(1 + below(9));
  }
  std::optional<std::string> source() {
    if (one(12)) return std::nullopt;
    return one(12) ? "" : "Source " + std::to_string(below(9));
  }
  std::optional<double> number() {
    if (one(10)) return std::nullopt;
    return std::uniform_real_distribution(one(4) ? -5000.0 : 0.0, 5000.0)(random);
  }

  bool oddDays;
  std::mt19937 random;
};

/// Of the random types, those whose values add up over a day.
bool addsUp(const std::string& type) {
  return type == "StepCount" || type == "DistanceWalkingRunning";
}

class PlainQueries : public testing::TestWithParam<unsigned> {
protected:
  PlainQueries() {
    database.addRecords(RandomRecords(GetParam()).some());
    // Text and bytes where a number belongs are no numbers.
    database.run(rawRecord("StepCount", "2020-03-05", "'many'"));
    database.run(rawRecord("HeartRate", "2020-03-05", "x'00ff'"));
  }

  /// Steps through `sql`, bound to a type, `first` and `last`.
  template <typename Read>
  void forEachRow(const HealthStore& store, const std::string& sql, const std::string& type,
                  Read read) {
    Statement query = store.prepare(sql);
    query.bind(1, type).bind(2, first).bind(3, last);
    while (const std::optional<Row> row = query.next()) read(*row);
  }

  TestDatabase database;
};

TEST_P(PlainQueries, GiveTheSameTotals) {
  const HealthStore store = database.open();
  for (const std::string type : {"StepCount", "DistanceWalkingRunning", "Nothing"}) {
    std::map<std::string, double> totals;
    forEachRow(store,
               "SELECT start_day, source_name, SUM(value_num) FROM records WHERE type=? AND "
               "start_day BETWEEN ? AND ? AND value_num IS NOT NULL AND typeof(value_num) = 'real' "
               "GROUP BY 1, 2",
               type,
               [&totals](const Row& row) {
                 double& total = totals[row.text(0)];
                 total = std::max(total, row.find<double>(2).value());
               });

    const std::map<std::string, double> ours = store.dailyTotals(type, first, last);

    ASSERT_EQ(ours.size(), totals.size());
    for (const auto& [day, total] : totals) EXPECT_DOUBLE_EQ(ours.at(day), total) << day;
  }
}

TEST_P(PlainQueries, GiveTheSameMedians) {
  const HealthStore store = database.open();
  std::map<std::string, std::vector<double>> values;
  forEachRow(store,
             "SELECT start_day, value_num FROM records WHERE type=? AND start_day BETWEEN ? AND ? "
             "AND value_num IS NOT NULL ORDER BY start_day",
             "HeartRate",
             [&values](const Row& row) {
               if (const auto value = row.find<double>(1)) values[row.text(0)].push_back(*value);
             });
  std::vector<DailyValue> series;
  for (auto& [day, ofDay] : values) series.push_back({day, median(ofDay).value()});

  EXPECT_EQ(store.series(HealthMetric::heartRate, first, last), series);
}

TEST_P(PlainQueries, GiveTheSameWithoutTheIndexOnTypeAndDay) {
  const std::map<std::string, double> totals =
      database.open().dailyTotals("StepCount", first, last);
  const std::vector<DailyValue> medians =
      database.open().series(HealthMetric::heartRate, first, last);
  const std::vector<DayRow> day = database.open().dayDetail("2020-03-05");
  const RecordCounts years = database.open().yearlyCounts();

  database.run("DROP INDEX ix_rec_type_day");

  EXPECT_EQ(database.open().dailyTotals("StepCount", first, last), totals);
  EXPECT_EQ(database.open().series(HealthMetric::heartRate, first, last), medians);
  EXPECT_EQ(database.open().dayDetail("2020-03-05"), day);
  EXPECT_EQ(database.open().yearlyCounts(), years);
}

TEST_P(PlainQueries, GiveTheSameValues) {
  const HealthStore store = database.open();
  std::vector<double> values;
  forEachRow(store,
             "SELECT value_num FROM records WHERE type=? AND start_day BETWEEN ? AND ? AND "
             "typeof(value_num) = 'real' ORDER BY 1",
             "HeartRate",
             [&values](const Row& row) { values.push_back(row.find<double>(0).value()); });

  std::vector<double> ours = store.values("HeartRate", first, last);

  std::ranges::sort(ours);
  EXPECT_EQ(ours, values);
}

TEST_P(PlainQueries, GiveTheSameYears) {
  const HealthStore store = database.open();
  std::map<std::string, std::int64_t> years;
  Statement query = store.prepare(
      "SELECT substr(start_day, 1, 4) AS y, COUNT(*) FROM records "
      "WHERE start_day IS NOT NULL AND length(start_day) >= 4 GROUP BY y");
  while (const std::optional<Row> row = query.next()) {
    years[row->text(0)] = row->find<std::int64_t>(1).value();
  }

  EXPECT_EQ(store.yearlyCounts().byYear, years);
}

TEST_P(PlainQueries, GiveTheSameSourcesWithoutStatistics) {
  database.run("DROP TABLE stat_sources");
  const HealthStore store = database.open();
  Statement query =
      store.prepare("SELECT DISTINCT source_name FROM records WHERE source_name <> '' ORDER BY 1");
  EXPECT_EQ(store.coverage().devices, query.readAll([](const Row& row) { return row.text(0); }));
}

TEST_P(PlainQueries, GiveTheSameDays) {
  const HealthStore store = database.open();
  for (const std::string day : {"2019-03-05", "2020-03-05", "2022-11-11", "2018-01-01"}) {
    Statement query = store.prepare(
        "SELECT type, COUNT(*), SUM(value_num) FROM records WHERE start_day=? AND "
        "value_num IS NOT NULL AND typeof(value_num) = 'real' GROUP BY type, source_name");
    query.bind(1, day);
    std::map<std::string, DayRow>
        plain;  // by type; the value is the largest sum, or the sum of all
    while (const std::optional<Row> row = query.next()) {
      const double sum = row->find<double>(2).value();
      const std::string type = row->text(0);
      const auto [found, isFirst] = plain.try_emplace(type, DayRow{type, sum, 0, ""});
      DayRow& ofType = found->second;
      ofType.samples += row->find<std::int64_t>(1).value();
      if (isFirst) continue;
      ofType.value = addsUp(ofType.type) ? std::max(ofType.value, sum) : ofType.value + sum;
    }

    const std::vector<DayRow> ours = store.dayDetail(day);

    ASSERT_EQ(ours.size(), plain.size()) << day;
    for (const DayRow& row : ours) {
      const DayRow& expected = plain.at(row.type);
      const double divisor = addsUp(row.type) ? 1 : static_cast<double>(expected.samples);
      EXPECT_EQ(row.samples, expected.samples) << day << row.type;
      EXPECT_NEAR(row.value, expected.value / divisor, 1e-6) << day << row.type;
    }
  }
}

TEST_P(PlainQueries, GiveTheSameLatestValues) {
  const HealthStore store = database.open();
  for (const std::string type : {"StepCount", "HeartRate", "BodyMass", "Nothing"}) {
    // Of records that begin at the same time any may be the latest.
    Statement query = store.prepare(
        "SELECT start_day, value_num FROM records WHERE type=?1 AND typeof(value_num) = 'real' AND "
        "start_date = (SELECT MAX(start_date) FROM records WHERE type=?1 AND "
        "typeof(value_num) = 'real')");
    query.bind(1, type);
    const std::vector<DailyValue> latest = query.readAll([](const Row& row) {
      return DailyValue{row.text(0), *row.find<double>(1)};
    });

    const std::optional<DailyValue> ours = store.latestValue(type);

    ASSERT_EQ(ours.has_value(), !latest.empty()) << type;
    if (ours) {
      EXPECT_THAT(latest, testing::Contains(*ours)) << type;
    }
  }
}

TEST(DaysOfBrokenBytes, ThatReadAlikeAreOneDay) {
  TestDatabase database;
  const auto add = [&database](const std::string& bytes, int bpm) {
    database.run(
        "INSERT INTO records (type, source_name, start_date, start_day, value_num) VALUES "
        "('HeartRate', 'Watch', '2024 " +
        bytes + "', CAST(x'323032342d" + bytes + "' AS TEXT), " + std::to_string(bpm) + ")");
  };
  add("c3", 1);
  add("c4", 3);
  add("ff", 9);
  add("f09f9880", 50);  // sorts before ff and after what is made of it

  EXPECT_EQ(database.open().series(HealthMetric::heartRate, "2024", always),
            (std::vector<DailyValue>{{"2024-\xEF\xBF\xBD", 3}, {"2024-\xF0\x9F\x98\x80", 50}}));
}

INSTANTIATE_TEST_SUITE_P(Seeds, PlainQueries, testing::Range(1U, 9U));

}  // namespace
