#include "platform/ReceiverError.h"
#include "store/HealthStore.h"
#include "support/RuinedPages.h"
#include "support/TestDatabase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <ostream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

inline void PrintTo(const DayRow& row, std::ostream* stream) {
  *stream << row.type << ": " << row.value << " \"" << row.unit << "\" of " << row.samples;
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* theDay = "2024-03-01";

/// The types whose values add up over a day.
constexpr std::array<const char*, 20> cumulativeTypes{"ActiveEnergyBurned",
                                                      "AppleExerciseTime",
                                                      "AppleMoveTime",
                                                      "AppleStandTime",
                                                      "BasalEnergyBurned",
                                                      "DietaryEnergyConsumed",
                                                      "DietaryWater",
                                                      "DistanceCycling",
                                                      "DistanceDownhillSnowSports",
                                                      "DistanceSwimming",
                                                      "DistanceWalkingRunning",
                                                      "DistanceWheelchair",
                                                      "FlightsClimbed",
                                                      "NikeFuel",
                                                      "NumberOfTimesFallen",
                                                      "PhysicalEffort",
                                                      "PushCount",
                                                      "StepCount",
                                                      "SwimmingStrokeCount",
                                                      "TimeInDaylight"};

TestRecord sample(const std::string& type, std::optional<std::string> source,
                  std::optional<double> value, std::optional<std::string> unit = "u") {
  return {
      .type = type, .source_name = std::move(source), .unit = std::move(unit), .value_num = value};
}

std::vector<DayRow> detailOf(const TestDatabase& database) {
  return database.open().dayDetail(theDay);
}

TEST(DayDetail, TakesTheLargestSourceOfATypeThatAddsUp) {
  TestDatabase database;
  database.addRecords({sample("ActiveEnergyBurned", "Phone", 100, "kcal"),
                       sample("ActiveEnergyBurned", "Phone", 200, "kcal"),
                       sample("ActiveEnergyBurned", "Watch", 280, "kcal")});

  EXPECT_THAT(detailOf(database), ElementsAre(DayRow{"ActiveEnergyBurned", 300, 3, "kcal"}));
}

struct FirstUnitCase {
  std::string name;
  std::vector<TestRecord> rows;
  std::string unit;
};

class UnitOfASource : public testing::TestWithParam<FirstUnitCase> {};

TEST_P(UnitOfASource, IsThatOfItsFirstRow) {
  TestDatabase database;
  database.addRecords(GetParam().rows);

  const std::vector<DayRow> rows = detailOf(database);

  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows.front().unit, GetParam().unit);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, UnitOfASource,
    testing::Values(FirstUnitCase{"SmallerValueFirst",
                                  {sample("BodyMass", "Scale", 60, "kg"),
                                   sample("BodyMass", "Scale", 132, "lb")},
                                  "kg"},
                    FirstUnitCase{"LargerValueFirst",
                                  {sample("BodyMass", "Scale", 132, "lb"),
                                   sample("BodyMass", "Scale", 60, "kg")},
                                  "lb"},
                    FirstUnitCase{"ThreeRows",
                                  {sample("BodyMass", "Scale", 9.4, "st"),
                                   sample("BodyMass", "Scale", 132, "lb"),
                                   sample("BodyMass", "Scale", 60, "kg")},
                                  "st"},
                    FirstUnitCase{"LaterHourFirst",
                                  {{.type = "BodyMass",
                                    .unit = "lb",
                                    .start_date = "2024-03-01 20:00:00 +0000",
                                    .value_num = 132},
                                   {.type = "BodyMass",
                                    .unit = "kg",
                                    .start_date = "2024-03-01 07:00:00 +0000",
                                    .value_num = 60}},
                                  "lb"},
                    FirstUnitCase{"TypeThatAddsUp",
                                  {sample("DistanceCycling", "Watch", 2000, "m"),
                                   sample("DistanceCycling", "Watch", 3, "km")},
                                  "m"},
                    FirstUnitCase{"NoUnitFirst",
                                  {sample("BodyMass", "Scale", 60, std::nullopt),
                                   sample("BodyMass", "Scale", 132, "lb")},
                                  ""},
                    FirstUnitCase{"NoUnitLater",
                                  {sample("BodyMass", "Scale", 132, "lb"),
                                   sample("BodyMass", "Scale", 60, std::nullopt)},
                                  "lb"},
                    FirstUnitCase{"FirstRowWithoutANumber",
                                  {sample("BodyMass", "Scale", std::nullopt, "st"),
                                   sample("BodyMass", "Scale", 60, "kg"),
                                   sample("BodyMass", "Scale", 132, "lb")},
                                  "kg"}),
    [](const auto& test) { return test.param.name; });

TEST(DayDetail, TakesTheMeanOfAllSamplesOfAnyOtherType) {
  TestDatabase database;
  database.addRecords({sample("HeartRate", "Watch", 60, "count/min"),
                       sample("HeartRate", "Watch", 80, "count/min"),
                       sample("HeartRate", "Strap", 70, "count/min")});

  EXPECT_THAT(detailOf(database), ElementsAre(DayRow{"HeartRate", 70, 3, "count/min"}));
}

TEST(DayDetail, KnowsEveryTypeThatAddsUp) {
  TestDatabase database;
  std::vector<DayRow> expected;
  for (const char* type : cumulativeTypes) {
    database.addRecords({sample(type, "Phone", 4), sample(type, "Watch", 10)});
    expected.push_back({type, 10, 2, "u"});
  }

  EXPECT_EQ(detailOf(database), expected);
}

TEST(DayDetail, AddsUpNoOtherType) {
  TestDatabase database;
  std::vector<DayRow> expected;
  for (const char* type : {"AppleStandHour",
                           "BodyMass",
                           "HeartRate",
                           "OxygenSaturation",
                           "SleepAnalysis",
                           "stepcount"}) {
    database.addRecords({sample(type, "Phone", 4), sample(type, "Watch", 10)});
    expected.push_back({type, 7, 2, "u"});
  }

  EXPECT_EQ(detailOf(database), expected);
}

TEST(DayDetail, TakesTheLargestSumEvenWhenAllAreNegative) {
  TestDatabase database;
  database.addRecords({sample("StepCount", "Phone", -5),
                       sample("StepCount", "Watch", -3),
                       sample("DietaryWater", "Phone", -2)});

  EXPECT_THAT(detailOf(database),
              ElementsAre(DayRow{"DietaryWater", -2, 1, "u"}, DayRow{"StepCount", -3, 2, "u"}));
}

TEST(DayDetail, CountsSamplesWithoutASourceAsOneSource) {
  TestDatabase database;
  database.addRecords({sample("StepCount", std::nullopt, 30),
                       sample("StepCount", std::nullopt, 40),
                       sample("StepCount", "", 60),
                       sample("StepCount", "Watch", 65)});

  EXPECT_THAT(detailOf(database), ElementsAre(DayRow{"StepCount", 70, 4, "u"}));
}

TEST(DayDetail, TakesTheUnitOfTheFirstSource) {
  TestDatabase database;
  database.addRecords({sample("BodyMass", "Scale", 70, "kg"),
                       sample("BodyMass", "App", 154, "lb"),
                       sample("BodyMassIndex", "Scale", 22, "count"),
                       sample("BodyMassIndex", "App", 22, ""),
                       sample("HeartRate", "Watch", 60, "count/min"),
                       sample("HeartRate", std::nullopt, 60, std::nullopt)});

  EXPECT_THAT(detailOf(database),
              ElementsAre(DayRow{"BodyMass", 112, 2, "lb"},
                          DayRow{"BodyMassIndex", 22, 2, ""},
                          DayRow{"HeartRate", 60, 2, ""}));
}

TEST(DayDetail, LeavesOutSamplesWithoutANumber) {
  TestDatabase database;
  database.addRecords({sample("HeartRate", "Watch", 60),
                       sample("HeartRate", "Watch", std::nullopt),
                       sample("HeartRate", "App", std::nullopt),
                       sample("SleepAnalysis", "Watch", std::nullopt)});

  EXPECT_THAT(detailOf(database), ElementsAre(DayRow{"HeartRate", 60, 1, "u"}));
}

TEST(DayDetail, TakesTextAndInfinitiesForNoNumber) {
  TestDatabase database;
  database.addRecords({sample("HeartRate", "Watch", 60),
                       sample("HeartRate", "Watch", 1),
                       sample("HeartRate", "Watch", 2),
                       sample("HeartRate", "Watch", 3),
                       sample("StepCount", "Watch", 1)});
  database.run("UPDATE records SET value_num='12 bpm' WHERE value_num=1")
      .run("UPDATE records SET value_num=X'3432' WHERE value_num=2")
      .run("UPDATE records SET value_num=9e999 WHERE value_num=3");

  EXPECT_THAT(detailOf(database), ElementsAre(DayRow{"HeartRate", 60, 1, "u"}));
}

TEST(DayDetail, IsAboutExactlyThatDay) {
  TestDatabase database;
  for (const std::optional<std::string>& day : std::vector<std::optional<std::string>>{
           "2024-02-29", "2024-03-01", "2024-03-01 ", "2024-03-02", "2024-3-1", "", std::nullopt}) {
    database.addRecord({.type = "StepCount", .start_day = day, .value_num = 10});
  }

  const HealthStore store = database.open();

  EXPECT_THAT(store.dayDetail("2024-03-01"), ElementsAre(DayRow{"StepCount", 10, 1, ""}));
  EXPECT_THAT(store.dayDetail("2024-3-1"), ElementsAre(DayRow{"StepCount", 10, 1, ""}));
  EXPECT_THAT(store.dayDetail("2024-02-28"), IsEmpty());
  EXPECT_THAT(store.dayDetail("2024-03-%"), IsEmpty());
}

TEST(DayDetail, IsSortedByTheBytesOfTheType) {
  TestDatabase database;
  database.addRecords({sample("apple", "Watch", 1),
                       sample("Zebra", "Watch", 1),
                       sample("心率", "Watch", 1),
                       sample("", "Watch", 1),
                       sample("Apple", "Watch", 1)});

  std::vector<std::string> types;
  for (const DayRow& row : detailOf(database)) types.push_back(row.type);

  EXPECT_THAT(types, ElementsAre("", "Apple", "Zebra", "apple", "心率"));
}

TEST(DayDetail, IsEmptyWithoutRecords) { EXPECT_THAT(detailOf(TestDatabase()), IsEmpty()); }

TEST(DayDetail, RepairsTextThatIsNotUTF8) {
  TestDatabase database;
  database.run(
      "INSERT INTO records (type, source_name, unit, start_date, start_day, value_num) VALUES "
      "(CAST(X'41FF42' AS TEXT), 'Watch', CAST(X'6BC3' AS TEXT), '', '2024-03-01', 5)");

  EXPECT_THAT(detailOf(database), ElementsAre(DayRow{"A\uFFFDB", 5, 1, "k\uFFFD"}));
}

TEST(DayDetail, FailsWithoutTheTable) {
  TestDatabase database;
  database.run("DROP TABLE records");
  const HealthStore store = database.open();

  try {
    store.dayDetail(theDay);
    FAIL() << "there is no table to read";
  } catch (const ReceiverError& error) {
    EXPECT_STREQ(error.what(), "prepare 失败:no such table: records");
  }
}

// --- the same figures as the plain statement

constexpr const char* plainStatement =
    "SELECT type, unit, COUNT(*), SUM(value_num), source_name\n"
    "FROM records WHERE start_day=? AND value_num IS NOT NULL\n"
    "GROUP BY type, source_name";

struct Sums {
  std::string unit;
  std::int64_t samples = 0;
  double total = 0;
  double largest = 0;
};

/// The rows of a day by the statement that reads the whole table.
std::vector<DayRow> plainDetail(const HealthStore& store, std::string_view day) {
  Statement query = store.prepare(plainStatement);
  query.bind(1, day);
  std::map<std::string, Sums> byType;
  while (const std::optional<Row> row = query.next()) {
    const double sum = row->find<double>(3).value_or(0);
    const auto [entry, isFirst] = byType.try_emplace(row->text(0), Sums{row->text(1), 0, 0, sum});
    Sums& sums = entry->second;
    sums.samples += row->find<std::int64_t>(2).value_or(0);
    sums.total += sum;
    sums.largest = std::max(sums.largest, sum);
  }
  std::vector<DayRow> rows;
  for (const auto& [type, sums] : byType) {
    const bool addsUp = std::ranges::find(cumulativeTypes, type) != cumulativeTypes.end();
    const double mean = sums.total / static_cast<double>(sums.samples);
    rows.push_back({type, addsUp ? sums.largest : mean, sums.samples, sums.unit});
  }
  return rows;
}

/// Some hundred records over four days; values are quarters, so that their sums are exact in any
/// order, and a source keeps its unit within a type.
std::vector<TestRecord> randomRecords(unsigned seed) {
  constexpr std::array types{"StepCount",
                             "DietaryWater",
                             "HeartRate",
                             "OxygenSaturation",
                             "PhysicalEffort",
                             "BodyMass",
                             "a",
                             ""};
  constexpr std::array days{"2024-02-29", "2024-03-01", "2024-03-02", "2024-03-03", ""};
  std::mt19937 generator(seed);
  const auto below = [&generator](unsigned limit) {
    return static_cast<unsigned>(generator() % limit);
  };
  const unsigned sources = 1 + below(12);
  std::vector<TestRecord> records;
  for (unsigned count = 100 + below(400); count > 0; --count) {
    const std::size_t type = below(types.size());
    const unsigned source = below(sources);
    TestRecord record{.type = types[type], .start_day = days[below(days.size())]};
    if (record.start_day == "") record.start_day = std::nullopt;
    record.source_name = source == 0 ? std::nullopt : std::optional("S" + std::to_string(source));
    if ((type + source) % 4 != 0) record.unit = (type + source) % 4 == 1 ? "" : "unit";
    if (below(8) != 0) record.value_num = (static_cast<double>(below(4000)) - 2000) / 4;
    records.push_back(std::move(record));
  }
  return records;
}

class DayDetailOfRandomRecords : public testing::TestWithParam<unsigned> {};

TEST_P(DayDetailOfRandomRecords, EqualsThePlainStatement) {
  TestDatabase database;
  database.addRecords(randomRecords(GetParam()));
  const HealthStore store = database.open();

  for (const char* day : {"2024-02-29", "2024-03-01", "2024-03-02", "2024-03-03", "2024-03-04"}) {
    EXPECT_EQ(store.dayDetail(day), plainDetail(store, day)) << day;
  }
  EXPECT_THAT(store.dayDetail("2024-03-01"), testing::Not(IsEmpty()));
}

INSTANTIATE_TEST_SUITE_P(Seeds, DayDetailOfRandomRecords, testing::Range(1u, 25u));

// --- without reading the rest of the table

/// The same sample over and over again.
std::vector<TestRecord> crowd(int count, const std::string& type, const std::string& day) {
  return std::vector<TestRecord>(static_cast<std::size_t>(count),
                                 {.type = type, .start_day = day, .value_num = 1});
}

TEST(DayDetail, ReadsNothingOfOtherDays) {
  TestDatabase database;
  for (const char* type : {"HeartRate", "StepCount"}) {
    database.addRecords({sample(type, "Phone", 60), sample(type, "Watch", 60)});
  }
  // The day that is ruined fills whole pages, of the table and of both indexes. The others stand
  // where a search for the day, or for the next type, may look.
  for (const char* type : {"HeartRate", "StepCount"}) {
    for (const char* day : {"2024-02-01", "2024-04-01", "2024-06-01"}) {
      database.addRecords(crowd(200, type, day));
    }
    database.addRecords(crowd(1000, type, "2024-05-05"));
  }
  ASSERT_GT(ruinPages(database, "2024-05-05"), 50);

  const HealthStore store = database.open();

  EXPECT_THAT(store.dayDetail(theDay),
              ElementsAre(DayRow{"HeartRate", 60, 2, "u"}, DayRow{"StepCount", 60, 2, "u"}));
  EXPECT_THROW(plainDetail(store, theDay), ReceiverError) << "it reads the whole table";
}

TEST(DayDetail, FailsWhenARowOfTheDayCannotBeRead) {
  TestDatabase database;
  std::vector<TestRecord> records;
  for (int number = 0; number < 200; ++number) {
    records.push_back(sample("HeartRate", "Watch", 60, "of-the-day"));
  }
  database.addRecords(records);
  ASSERT_GT(ruinPages(database, "of-the-day"), 0);
  const HealthStore store = database.open();

  try {
    store.dayDetail(theDay);
    FAIL() << "the rows cannot have been read";
  } catch (const ReceiverError& error) {
    EXPECT_STREQ(error.what(), "读取失败:database disk image is malformed");
  }
}

}  // namespace
