#include "store/HealthStore.h"
#include "support/TestDatabase.h"
#include "support/ZoneGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

using testing::UnorderedElementsAre;

using Series = std::vector<DailyValue>;

constexpr const char* always = "9999-12-31";

TestRecord steps(const std::string& day, double count, const std::string& source = "Watch") {
  return {.type = "StepCount", .source_name = source, .start_day = day, .value_num = count};
}

TestRecord heartRate(const std::string& day, double bpm) {
  return {.type = "HeartRate", .start_day = day, .value_num = bpm};
}

TestRecord sleep(const std::string& day, const std::string& start, const std::string& end,
                 const std::string& value = "HKCategoryValueSleepAnalysisAsleepCore") {
  return {.type = "SleepAnalysis",
          .start_date = start,
          .start_day = day,
          .end_date = end,
          .value = value};
}

/// A record of `type` whose `value_num` is the SQL literal `value`.
std::string rawRecord(const std::string& type, const std::string& day, const std::string& value) {
  return "INSERT INTO records (type, source_name, start_date, start_day, value_num) VALUES ('" +
         type + "', 'Watch', '" + day + " 09:00:00 +0000', '" + day + "', " + value + ")";
}

class MetricSeries : public testing::TestWithParam<HealthMetric> {};

TEST_P(MetricSeries, ReadsTheRecordsOfItsOwnType) {
  TestDatabase database;
  double value = 200;
  for (const MetricInfo& info : metricTable) {
    database.addRecord({.type = std::string(info.storeType),
                        .start_date = "2024-03-01 20:00:00 +0000",
                        .end_date = "2024-03-01 23:20:00 +0000",
                        .value = "Asleep",
                        .value_num = value});
    value += info.metric < GetParam() ? 1 : 0;
  }

  const Series series = database.open().series(GetParam(), "2024-03-01", "2024-03-01");

  const double expected =
      GetParam() == HealthMetric::sleep ? 200 : 200 + static_cast<double>(GetParam());
  EXPECT_EQ(series, (Series{{"2024-03-01", expected}}));
}

INSTANTIATE_TEST_SUITE_P(Metrics, MetricSeries, testing::ValuesIn([] {
                           std::vector<HealthMetric> metrics;
                           for (const MetricInfo& row : metricTable) metrics.push_back(row.metric);
                           return metrics;
                         }()),
                         [](const auto& test) { return std::string(infoOf(test.param).rawValue); });

TEST(CumulativeSeries, TakesTheLargestSourceAndNeverAddsSources) {
  TestDatabase database;
  database.addRecords(
      {steps("2024-03-01", 5000), steps("2024-03-01", 3000), steps("2024-03-01", 7500, "iPhone")});

  EXPECT_EQ(database.open().series(HealthMetric::steps, "2024-03-01", "2024-03-01"),
            (Series{{"2024-03-01", 8000}}));
}

TEST(CumulativeSeries, ChoosesTheSourceOfEachDayAnew) {
  TestDatabase database;
  database.addRecords({steps("2024-03-02", 10),
                       steps("2024-03-02", 20, "iPhone"),
                       steps("2024-03-01", 30),
                       steps("2024-03-01", 5, "iPhone")});

  EXPECT_EQ(database.open().series(HealthMetric::steps, "", always),
            (Series{{"2024-03-01", 30}, {"2024-03-02", 20}}));
}

TEST(CumulativeSeries, CountsRecordsWithoutASourceAsOneSource) {
  TestDatabase database;
  TestRecord nameless = steps("2024-03-01", 100);
  nameless.source_name = std::nullopt;
  database.addRecords({nameless, nameless, steps("2024-03-01", 150)});

  EXPECT_EQ(database.open().series(HealthMetric::steps, "", always), (Series{{"2024-03-01", 200}}));
}

TEST(CumulativeSeries, IsZeroWhenEverySourceIsNegative) {
  TestDatabase database;
  database.addRecords({steps("2024-03-01", -5), steps("2024-03-01", -3, "iPhone")});

  EXPECT_EQ(database.open().series(HealthMetric::steps, "", always), (Series{{"2024-03-01", 0}}));
}

TEST(MedianOfADay, IsTheMiddleOfAllSources) {
  TestDatabase database;
  for (const double bpm : {100.0, 60.0, 80.0, 70.0}) {
    database.addRecord(heartRate("2024-03-01", bpm));
  }
  for (const double bpm : {100.0, 60.0, 70.0}) database.addRecord(heartRate("2024-03-02", bpm));

  EXPECT_EQ(database.open().series(HealthMetric::heartRate, "2024-03-01", "2024-03-02"),
            (Series{{"2024-03-01", 75}, {"2024-03-02", 70}}));
}

TEST(SeriesRange, IncludesBothEnds) {
  TestDatabase database;
  for (const char* day : {"2024-02-29", "2024-03-01", "2024-03-02", "2024-03-03"}) {
    database.addRecords({steps(day, 10), heartRate(day, 60)});
  }
  const HealthStore store = database.open();

  EXPECT_EQ(store.series(HealthMetric::steps, "2024-03-01", "2024-03-02"),
            (Series{{"2024-03-01", 10}, {"2024-03-02", 10}}));
  EXPECT_EQ(store.series(HealthMetric::heartRate, "2024-03-01", "2024-03-02"),
            (Series{{"2024-03-01", 60}, {"2024-03-02", 60}}));
  EXPECT_EQ(store.values("HeartRate", "2024-03-01", "2024-03-02").size(), 2U);
}

TEST(SeriesRange, IsEmptyWithoutRecords) {
  TestDatabase database;
  database.addRecords({steps("2024-03-01", 10), heartRate("2024-03-01", 60)});
  const HealthStore store = database.open();

  for (const MetricInfo& info : metricTable) {
    EXPECT_TRUE(store.series(info.metric, "2024-03-02", always).empty()) << info.rawValue;
    EXPECT_TRUE(store.series(info.metric, always, "2024-03-01").empty()) << info.rawValue;
  }
}

TEST(SeriesRange, LeavesOutRecordsWithoutADayOrAValue) {
  TestDatabase database;
  database.addRecords({{.type = "StepCount", .start_day = std::nullopt, .value_num = 5},
                       {.type = "HeartRate", .start_day = std::nullopt, .value_num = 5},
                       {.type = "StepCount", .value_num = std::nullopt},
                       {.type = "HeartRate", .value_num = std::nullopt}});
  const HealthStore store = database.open();

  EXPECT_TRUE(store.series(HealthMetric::steps, "", always).empty());
  EXPECT_TRUE(store.series(HealthMetric::heartRate, "", always).empty());
  EXPECT_TRUE(store.values("HeartRate", "", always).empty());
}

/// What may stand in the column of numbers and is none.
class NoNumber : public testing::TestWithParam<std::string> {
protected:
  NoNumber() {
    for (const char* type : {"StepCount", "HeartRate", "BodyMass"}) {
      database.run(rawRecord(type, "2024-03-01", GetParam()));
    }
  }

  TestDatabase database;
};

TEST_P(NoNumber, IsNotAMedian) {
  EXPECT_TRUE(database.open().series(HealthMetric::heartRate, "", always).empty());
}

TEST_P(NoNumber, IsNotAValue) {
  EXPECT_TRUE(database.open().values("HeartRate", "", always).empty());
}

TEST_P(NoNumber, IsNotATotal) {
  EXPECT_TRUE(database.open().dailyTotals("StepCount", "", always).empty());
}

TEST_P(NoNumber, IsNotTheLatestValue) {
  EXPECT_EQ(database.open().latestValue("BodyMass"), std::nullopt);
}

TEST_P(NoNumber, DoesNotHideTheNumbersBesideIt) {
  database.addRecords({heartRate("2024-03-01", 60),
                       steps("2024-03-01", 7),
                       {.type = "BodyMass", .start_day = "2024-02-01", .value_num = 70}});
  const HealthStore store = database.open();

  EXPECT_EQ(store.series(HealthMetric::heartRate, "", always), (Series{{"2024-03-01", 60}}));
  EXPECT_EQ(store.series(HealthMetric::steps, "", always), (Series{{"2024-03-01", 7}}));
  EXPECT_EQ(store.latestValue("BodyMass"), (DatedValue{"2024-02-01", 70}));
}

INSTANTIATE_TEST_SUITE_P(Literals, NoNumber,
                         testing::Values("'unknown'", "'12 bpm'", "''", "x'3132'", "x''"));

TEST(DailyTotals, AreReadByDay) {
  TestDatabase database;
  database.addRecords({steps("2024-03-01", 5),
                       steps("2024-03-01", 4, "iPhone"),
                       steps("2024-03-02", 6),
                       heartRate("2024-03-02", 60)});

  EXPECT_EQ(database.open().dailyTotals("StepCount", "2024-03-01", "2024-03-02"),
            (std::map<std::string, double>{{"2024-03-01", 5}, {"2024-03-02", 6}}));
  EXPECT_TRUE(database.open().dailyTotals("stepcount", "", always).empty());
}

TEST(Values, AreEveryNumberOfTheType) {
  TestDatabase database;
  database.addRecords({heartRate("2024-03-01", 60),
                       heartRate("2024-03-01", 60),
                       heartRate("2024-03-02", 0),
                       steps("2024-03-01", 5)});

  EXPECT_THAT(database.open().values("HeartRate", "", always), UnorderedElementsAre(60, 60, 0));
  EXPECT_TRUE(database.open().values("BodyMass", "", always).empty());
}

TEST(LatestValue, IsTheOneWithTheLastStamp) {
  TestDatabase database;
  database.addRecords({{.type = "BodyMass",
                        .start_date = "2024-03-02 07:00:00 +0000",
                        .start_day = "2024-03-02",
                        .value_num = 71},
                       {.type = "BodyMass",
                        .start_date = "2024-03-02 21:00:00 +0000",
                        .start_day = "2024-03-02",
                        .value_num = 72},
                       {.type = "BodyMass",
                        .start_date = "2024-03-01 23:00:00 +0000",
                        .start_day = "2024-03-01",
                        .value_num = 70},
                       {.type = "BodyMass", .start_day = "2024-03-03", .value_num = std::nullopt},
                       {.type = "BodyMassIndex", .start_day = "2024-03-04", .value_num = 22}});

  EXPECT_EQ(database.open().latestValue("BodyMass"), (DatedValue{"2024-03-02", 72}));
}

TEST(LatestValue, ComparesStampsAsText) {
  TestDatabase database;
  database.addRecords({{.type = "BodyMass",
                        .start_date = "2024-03-02 09:00:00 +0800",
                        .start_day = "2024-03-02",
                        .value_num = 71},
                       {.type = "BodyMass",
                        .start_date = "2024-03-02 08:00:00 +0000",
                        .start_day = "2024-03-02",
                        .value_num = 72}});

  EXPECT_EQ(database.open().latestValue("BodyMass"), (DatedValue{"2024-03-02", 71}));
}

TEST(LatestValue, IsOneOfThoseThatShareTheLastStamp) {
  TestDatabase database;
  database.addRecords({{.type = "BodyMass", .value_num = 71},
                       {.type = "BodyMass", .value_num = 72},
                       {.type = "BodyMass", .start_day = "2024-02-01", .value_num = 60}});

  const std::optional<DatedValue> latest = database.open().latestValue("BodyMass");

  ASSERT_TRUE(latest);
  EXPECT_EQ(latest->day, "2024-03-01");
  EXPECT_TRUE(latest->value == 71 || latest->value == 72) << latest->value;
}

TEST(LatestValue, MayHaveNoDay) {
  TestDatabase database;
  database.addRecord({.type = "BodyMass", .start_day = std::nullopt, .value_num = 71});
  EXPECT_EQ(database.open().latestValue("BodyMass"), (DatedValue{"", 71}));
}

TEST(LatestValue, IsAbsentForATypeThatWasNeverRecorded) {
  TestDatabase database;
  database.addRecord(heartRate("2024-03-01", 60));
  EXPECT_EQ(database.open().latestValue("BodyMass"), std::nullopt);
}

TEST(SleepSegments, AreReadAsTheyAreStored) {
  TestDatabase database;
  database.addRecords({sleep("2024-03-01", "2024-03-01 23:00:00 +0800", "not a stamp", "InBed"),
                       {.type = "SleepAnalysis", .start_date = "x", .start_day = "2024-03-01"},
                       sleep("2024-02-29", "2024-02-29 23:00:00 +0800", "y"),
                       heartRate("2024-03-01", 60)});

  EXPECT_THAT(
      database.open().sleepSegments("2024-03-01", "2024-03-01"),
      UnorderedElementsAre(SleepSegment{"2024-03-01 23:00:00 +0800", "not a stamp", "InBed"},
                           SleepSegment{"x", "", ""}));
}

struct NightCase {
  std::string name;
  std::vector<TestRecord> records;
  Series nights;
  std::string zone = "UTC";
};

class SleepSeries : public testing::TestWithParam<NightCase> {};

TEST_P(SleepSeries, CountsTheMinutesOfEachNight) {
  const ZoneGuard zone(GetParam().zone);
  TestDatabase database;
  database.addRecords(GetParam().records);

  EXPECT_EQ(database.open().series(HealthMetric::sleep, "2024-01-01", "2024-12-31"),
            GetParam().nights);
}

INSTANTIATE_TEST_SUITE_P(
    Nights, SleepSeries,
    testing::Values(
        NightCase{"FromHalfPastElevenToSeven",
                  {sleep("2024-03-01", "2024-03-01 23:30:00 +0000", "2024-03-02 07:00:00 +0000")},
                  {{"2024-03-01", 450}}},
        NightCase{"OfOneHundredAndNineteenMinutes",
                  {sleep("2024-03-01", "2024-03-01 23:00:00 +0000", "2024-03-02 00:59:00 +0000")},
                  {}},
        NightCase{"OfOneHundredAndTwentyMinutes",
                  {sleep("2024-03-01", "2024-03-01 23:00:00 +0000", "2024-03-02 01:00:00 +0000")},
                  {{"2024-03-01", 120}}},
        NightCase{"InBedAndAwake",
                  {sleep("2024-03-01", "2024-03-01 23:00:00 +0000", "2024-03-02 07:00:00 +0000",
                         "HKCategoryValueSleepAnalysisInBed"),
                   sleep("2024-03-01", "2024-03-01 23:00:00 +0000", "2024-03-02 07:00:00 +0000",
                         "HKCategoryValueSleepAnalysisAwake")},
                  {}},
        NightCase{"WithStampsThatAreNone",
                  {sleep("2024-03-01", "2024-03-01", "2024-03-02 07:00:00 +0000"),
                   sleep("2024-03-01", "2024-03-01 23:00:00 +0000", "later")},
                  {}},
        NightCase{"InShanghai",
                  {sleep("2024-03-02", "2024-03-02 01:30:00 +0800", "2024-03-02 06:30:00 +0800")},
                  {{"2024-03-01", 300}},
                  "Asia/Shanghai"},
        NightCase{"WhenClocksGoForward",
                  {sleep("2024-03-09", "2024-03-09 23:00:00 -0500", "2024-03-10 07:00:00 -0400")},
                  {{"2024-03-09", 420}},
                  "America/New_York"},
        NightCase{"WhenClocksGoBack",
                  {sleep("2024-11-02", "2024-11-02 23:00:00 -0400", "2024-11-03 07:00:00 -0500")},
                  {{"2024-11-02", 540}},
                  "America/New_York"}),
    [](const auto& test) { return test.param.name; });

TEST(SleepSeriesRange, MayBeginTheDayBefore) {
  TestDatabase database;
  database.addRecord(sleep("2024-03-01", "2024-03-01 01:00:00 +0000", "2024-03-01 07:00:00 +0000"));

  EXPECT_EQ(database.open().series(HealthMetric::sleep, "2024-03-01", "2024-03-01"),
            (Series{{"2024-02-29", 360}}));
}

TEST(YearlyCounts, CountRecordsByTheirYear) {
  TestDatabase database;
  database.addRecords({heartRate("2022-12-31", 1),
                       heartRate("2023-01-01", 1),
                       steps("2023-06-01", 1),
                       {.start_day = std::nullopt},
                       {.start_day = "202"},
                       {.start_day = ""},
                       {.start_day = "1999"}});

  EXPECT_EQ(database.open().yearlyCounts(),
            (std::map<std::string, std::int64_t>{{"1999", 1}, {"2022", 1}, {"2023", 2}}));
}

TEST(PresentTypes, AreEachTypeOnce) {
  TestDatabase database;
  database.addRecords({heartRate("2024-03-01", 60),
                       heartRate("2024-03-02", 60),
                       steps("2024-03-01", 1),
                       {.type = "", .start_day = std::nullopt}});

  EXPECT_EQ(database.open().presentTypes(), (std::set<std::string>{"", "HeartRate", "StepCount"}));
}

TEST(Coverage, OfAnEmptyDatabaseIsEmpty) {
  const TestDatabase database;
  EXPECT_EQ(database.open().coverage(), SummaryCoverage());
  EXPECT_TRUE(database.open().presentTypes().empty());
  EXPECT_TRUE(database.open().yearlyCounts().empty());
}

TEST(Coverage, TellsRangeAndCountsAndLeavesTheRest) {
  TestDatabase database;
  database.addRecords({heartRate("2023-05-01", 60),
                       heartRate("2024-03-01", 60),
                       steps("2022-01-02", 1, "iPhone"),
                       {.type = "BodyMass", .start_day = std::nullopt}});
  SummaryCoverage expected;
  expected.firstDay = "2022-01-02";
  expected.lastDay = "2024-03-01";
  expected.records = 4;
  expected.typeCount = 3;
  expected.devices = {"Watch", "iPhone"};

  EXPECT_EQ(database.open().coverage(), expected);
}

TEST(Coverage, OfRecordsWithoutDaysHasNoRange) {
  TestDatabase database;
  database.addRecord({.start_day = std::nullopt});
  const SummaryCoverage coverage = database.open().coverage();
  EXPECT_EQ(coverage.firstDay, "");
  EXPECT_EQ(coverage.lastDay, "");
  EXPECT_EQ(coverage.records, 1);
}

class CoverageOfRandomRecords : public testing::TestWithParam<unsigned> {};

TEST_P(CoverageOfRandomRecords, IsWhatPlainQueriesSay) {
  std::mt19937 random(GetParam());
  const auto below = [&random](std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
  };
  const std::vector<std::string> types{
      "HeartRate", "StepCount", "", "步数", "heartRate", "Z", "zz"};
  std::vector<TestRecord> records(below(400));
  for (TestRecord& record : records) {
    record.type = types[below(types.size())];
    record.start_date = "2024-03-01 08:00:00 +0000";
    record.start_day = std::to_string(2015 + below(10)) + "-0" + std::to_string(1 + below(9)) +
                       "-" + std::to_string(10 + below(19));
    if (below(10) == 0) record.start_day = std::nullopt;
    if (below(50) == 0) record.start_day = "";
    if (record.type == "Z") record.start_day = std::nullopt;
    record.value_num = static_cast<double>(below(100));
  }
  TestDatabase database;
  database.addRecords(records);
  const HealthStore store = database.open();

  Statement plain = store.prepare(
      "SELECT COUNT(*), MIN(start_day), MAX(start_day), COUNT(DISTINCT type) FROM records");
  const std::optional<Row> row = plain.next();
  Statement distinct = store.prepare("SELECT DISTINCT type FROM records ORDER BY 1");
  const std::vector<std::string> present =
      distinct.readAll([](const Row& type) { return type.text(0); });
  const SummaryCoverage coverage = store.coverage();

  EXPECT_EQ(coverage.records, row->find<std::int64_t>(0));
  EXPECT_EQ(coverage.firstDay, row->text(1));
  EXPECT_EQ(coverage.lastDay, row->text(2));
  EXPECT_EQ(coverage.typeCount, row->find<std::int64_t>(3));
  EXPECT_EQ(store.presentTypes(), std::set<std::string>(present.begin(), present.end()));
}

INSTANTIATE_TEST_SUITE_P(Seeds, CoverageOfRandomRecords, testing::Range(1U, 13U));

class SeriesOfRandomRecords : public testing::TestWithParam<unsigned> {};

TEST_P(SeriesOfRandomRecords, AreWhatAPlainLoopFinds) {
  std::mt19937 random(GetParam());
  const auto below = [&random](int count) {
    return std::uniform_int_distribution<int>(0, count - 1)(random);
  };
  std::vector<TestRecord> records;
  std::map<std::string, std::map<std::string, double>> sums;
  std::map<std::string, std::vector<double>> samples;
  for (int index = 0; index < 300; ++index) {
    const std::string day = "2024-03-" + std::to_string(10 + below(10));
    const std::string source(1, static_cast<char>('A' + below(3)));
    const double value = below(2000) - 200;
    records.push_back(steps(day, value, source));
    records.push_back(heartRate(day, value));
    sums[day][source] += value;
    samples[day].push_back(value);
  }
  TestDatabase database;
  database.addRecords(records);
  Series totals;
  for (const auto& [day, bySource] : sums) {
    double largest = 0;
    for (const auto& [source, sum] : bySource) largest = std::max(largest, sum);
    totals.push_back({day, largest});
  }
  Series medians;
  for (auto& [day, values] : samples) {
    std::ranges::sort(values);
    const std::size_t half = values.size() / 2;
    medians.push_back(
        {day, values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) * 0.5});
  }

  EXPECT_EQ(database.open().series(HealthMetric::steps, "", always), totals);
  EXPECT_EQ(database.open().series(HealthMetric::heartRate, "", always), medians);
}

INSTANTIATE_TEST_SUITE_P(Seeds, SeriesOfRandomRecords, testing::Range(1U, 6U));

TEST(Devices, AreTheCountedSourcesLastActiveFirst) {
  TestDatabase database;
  database.addRecord({.source_name = "Not counted"})
      .addSources({{"Old phone", 10, "2020-01-01 08:00:00 +0000"},
                   {"Watch", 1000, "2024-03-01 08:00:00 +0000"},
                   {"Scale", 3, "2022-01-01 08:00:00 +0000"},
                   {"Never seen", 0, "2025-01-01 08:00:00 +0000"},
                   {"", 5, "2026-01-01 08:00:00 +0000"}});

  EXPECT_EQ(database.open().coverage().devices,
            (std::vector<std::string>{"Watch", "Scale", "Old phone"}));
}

TEST(Devices, WithoutATimeComeLast) {
  TestDatabase database;
  database.addSources({{"No time", 10, std::nullopt}, {"Watch", 1, "2024-03-01"}});
  EXPECT_EQ(database.open().coverage().devices, (std::vector<std::string>{"Watch", "No time"}));
}

/// Makes the counted sources say nothing, so that the records have to.
struct FallbackCase {
  std::string name;
  std::string sql;
};

class DevicesFromTheRecords : public testing::TestWithParam<FallbackCase> {};

TEST_P(DevicesFromTheRecords, AreInAlphabeticalOrder) {
  TestDatabase database;
  database
      .addRecords({{.source_name = "iPhone"},
                   {.source_name = "Watch"},
                   {.source_name = "Watch"},
                   {.source_name = ""},
                   {.source_name = std::nullopt}})
      .run(GetParam().sql);

  EXPECT_EQ(database.open().coverage().devices, (std::vector<std::string>{"Watch", "iPhone"}));
}

INSTANTIATE_TEST_SUITE_P(
    Statistics, DevicesFromTheRecords,
    testing::Values(FallbackCase{"NoTable", "DROP TABLE stat_sources"},
                    FallbackCase{"EmptyTable", "DELETE FROM stat_sources"},
                    FallbackCase{"NothingCounted",
                                 "INSERT INTO stat_sources VALUES ('Scale', 0, '2024')"},
                    FallbackCase{"NamelessAlone",
                                 "INSERT INTO stat_sources VALUES ('', 7, '2024'), "
                                 "(NULL, 8, '2023')"}),
    [](const auto& test) { return test.param.name; });

/// A record whose type, source and day hold a byte that is no UTF-8.
constexpr const char* brokenRecord =
    "INSERT INTO records (type, source_name, start_date, start_day, value_num) VALUES ("
    "CAST(x'48FF52' AS TEXT), CAST(x'57C3' AS TEXT), '2024-03-01 08:00:00 +0000', "
    "CAST(x'323032342DFF' AS TEXT), 5)";

TEST(BrokenText, IsRepairedWhereverItIsRead) {
  TestDatabase database;
  database.run(brokenRecord);
  const HealthStore store = database.open();

  const SummaryCoverage coverage = store.coverage();

  EXPECT_EQ(coverage.firstDay, "2024-\xEF\xBF\xBD");
  EXPECT_EQ(coverage.lastDay, "2024-\xEF\xBF\xBD");
  EXPECT_EQ(coverage.devices, std::vector<std::string>{"W\xEF\xBF\xBD"});
  EXPECT_EQ(coverage.typeCount, 1);
  EXPECT_EQ(store.presentTypes(),
            std::set<std::string>{"H\xEF\xBF\xBD"
                                  "R"});
  EXPECT_EQ(store.yearlyCounts(), (std::map<std::string, std::int64_t>{{"2024", 1}}));
}

TEST(BrokenText, IsRepairedInSeriesAndValues) {
  TestDatabase database;
  database.run(brokenRecord);
  const std::string day = "2024-\xEF\xBF\xBD";
  for (const char* type : {"StepCount", "HeartRate"}) {
    database.run(std::string("UPDATE records SET type = '") + type + "'");
    const HealthStore store = database.open();
    const HealthMetric metric =
        std::string(type) == "StepCount" ? HealthMetric::steps : HealthMetric::heartRate;
    EXPECT_EQ(store.series(metric, "", always), (Series{{day, 5}}));
    EXPECT_EQ(store.latestValue(type), (DatedValue{day, 5}));
  }
}

TEST(BrokenText, OfACountedSourceIsRepaired) {
  TestDatabase database;
  database.run("INSERT INTO stat_sources VALUES (CAST(x'57C3' AS TEXT), 1, '2024')");
  EXPECT_EQ(database.open().coverage().devices, std::vector<std::string>{"W\xEF\xBF\xBD"});
}

TEST(BlobInTheTypeColumn, CountsAsATypeOfItsOwn) {
  TestDatabase database;
  database.addRecord(heartRate("2024-03-01", 60))
      .run("INSERT INTO records (type, start_date, start_day) VALUES (x'4142', 'a', '2024-03-02')")
      .run("INSERT INTO records (type, start_date, start_day) VALUES (x'00FF', 'b', '2024-03-03')");
  const HealthStore store = database.open();

  EXPECT_EQ(store.coverage().typeCount, 3);
  EXPECT_EQ(store.coverage().lastDay, "2024-03-03");
  EXPECT_EQ(store.presentTypes().size(), 3U);
  EXPECT_TRUE(store.presentTypes().contains("AB"));
}

}  // namespace
