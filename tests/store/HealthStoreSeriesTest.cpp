#include "store/HealthStore.h"
#include "store/SeriesRecords.h"
#include "support/TestDatabase.h"
#include "support/ZoneGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace {

using testing::UnorderedElementsAre;

using Series = std::vector<DailyValue>;

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
  EXPECT_EQ(store.latestValue("BodyMass"), (DailyValue{"2024-02-01", 70}));
}

INSTANTIATE_TEST_SUITE_P(Literals, NoNumber,
                         testing::Values("'unknown'", "'12 bpm'", "''", "x'3132'", "x''", "9e999",
                                         "-9e999"));

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

  EXPECT_EQ(database.open().latestValue("BodyMass"), (DailyValue{"2024-03-02", 72}));
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

  EXPECT_EQ(database.open().latestValue("BodyMass"), (DailyValue{"2024-03-02", 71}));
}

TEST(LatestValue, IsOneOfThoseThatShareTheLastStamp) {
  TestDatabase database;
  database.addRecords({{.type = "BodyMass", .value_num = 71},
                       {.type = "BodyMass", .value_num = 72},
                       {.type = "BodyMass", .start_day = "2024-02-01", .value_num = 60}});

  const std::optional<DailyValue> latest = database.open().latestValue("BodyMass");

  ASSERT_TRUE(latest);
  EXPECT_EQ(latest->day, "2024-03-01");
  EXPECT_TRUE(latest->value == 71 || latest->value == 72) << latest->value;
}

TEST(LatestValue, MayHaveNoDay) {
  TestDatabase database;
  database.addRecord({.type = "BodyMass", .start_day = std::nullopt, .value_num = 71});
  EXPECT_EQ(database.open().latestValue("BodyMass"), (DailyValue{"", 71}));
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

}  // namespace
