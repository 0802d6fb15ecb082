// What there is at all: years, types, range and devices.

#include "store/HealthStore.h"
#include "store/SeriesRecords.h"
#include "support/TestDatabase.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace {

TEST(YearlyCounts, CountRecordsByTheirYear) {
  TestDatabase database;
  database.addRecords({heartRate("2022-12-31", 1),
                       heartRate("2023-01-01", 1),
                       steps("2023-06-01", 1),
                       {.start_day = std::nullopt},
                       {.start_day = "202"},
                       {.start_day = ""},
                       {.start_day = "1999"}});

  const RecordCounts counts = database.open().yearlyCounts();

  EXPECT_EQ(counts.byYear,
            (std::map<std::string, std::int64_t>{{"1999", 1}, {"2022", 1}, {"2023", 2}}));
  EXPECT_EQ(counts.withoutYear, 3);
  EXPECT_EQ(counts.total(), 7);
}

/// Days that no receiver writes: of each, SQLite says which year it has.
constexpr const char* oddDays[] = {"''",
                                   "'2'",
                                   "'202'",
                                   "'2024'",
                                   "'9999-99'",
                                   "'10000-01-01'",
                                   "'2024 '",
                                   "'abcd-01-01'",
                                   "'二〇二四年'",
                                   "'20二四-01-01'",
                                   "CAST(x'323032FF34' AS TEXT)",
                                   "CAST(x'32303234FF' AS TEXT)",
                                   "CAST(x'32303234FFFF' AS TEXT)",
                                   "CAST(x'3230323400' AS TEXT)",
                                   "CAST(x'3230003234' AS TEXT)",
                                   "CAST(x'FFFFFFFFFF' AS TEXT)",
                                   "x'32303234'",
                                   "x'00'",
                                   "NULL"};

TEST(YearlyCounts, OfDaysThatAreNoDaysAreThoseOfThePlainStatement) {
  TestDatabase database;
  int number = 0;
  for (const char* day : oddDays) {
    for (const char* type : {"'HeartRate'", "'StepCount'", "''"}) {
      for (int times = 0; times <= ++number % 3; ++times) {
        database.run("INSERT INTO records (type, start_date, start_day) VALUES (" +
                     std::string(type) + ", '" + std::to_string(number) + "-" +
                     std::to_string(times) + "', " + day + ")");
      }
    }
  }
  database.addRecords({heartRate("2023-12-31", 1), heartRate("2024-01-01", 1)});
  for (const char* change : {"", "DROP INDEX ix_rec_type_day"}) {
    database.run(change);
    const HealthStore store = database.open();
    Statement plain = store.prepare(
        "SELECT substr(start_day, 1, 4) AS y, COUNT(*) FROM records "
        "WHERE start_day IS NOT NULL AND length(start_day) >= 4 GROUP BY y");
    RecordCounts expected;
    while (const std::optional<Row> row = plain.next()) {
      expected.byYear[row->text(0)] += row->find<std::int64_t>(1).value();
    }
    expected.withoutYear = store.recordCount() - expected.total();

    EXPECT_GT(expected.withoutYear, 0);
    EXPECT_EQ(store.yearlyCounts(), expected) << change;
  }
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
  EXPECT_EQ(database.open().recordCount(), 0);
  EXPECT_TRUE(database.open().presentTypes().empty());
  EXPECT_TRUE(database.open().yearlyCounts().byYear.empty());
}

TEST(Coverage, OrdersDaysAsTheyAreStored) {
  TestDatabase database;
  // Repaired to valid text, the broken bytes would come before the emoji.
  database.run(
      "INSERT INTO records (type, start_date, start_day) VALUES "
      "('HeartRate', 'a', CAST(x'32303234FF' AS TEXT)), "
      "('StepCount', 'b', CAST(x'32303234F09F9880' AS TEXT))");

  EXPECT_EQ(database.open().coverage().firstDay, "2024\xF0\x9F\x98\x80");
  EXPECT_EQ(database.open().coverage().lastDay, "2024\xEF\xBF\xBD");
}

TEST(Coverage, TellsRangeTypesAndDevicesAndLeavesTheRest) {
  TestDatabase database;
  database.addRecords({heartRate("2023-05-01", 60),
                       heartRate("2024-03-01", 60),
                       steps("2022-01-02", 1, "iPhone"),
                       {.type = "BodyMass", .start_day = std::nullopt}});
  SummaryCoverage expected;
  expected.firstDay = "2022-01-02";
  expected.lastDay = "2024-03-01";
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
  EXPECT_EQ(coverage.typeCount, 1);
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

  EXPECT_EQ(store.recordCount(), row->find<std::int64_t>(0));
  EXPECT_EQ(store.yearlyCounts().total(), store.recordCount());
  EXPECT_EQ(coverage.firstDay, row->text(1));
  EXPECT_EQ(coverage.lastDay, row->text(2));
  EXPECT_EQ(coverage.typeCount, row->find<std::int64_t>(3));
  EXPECT_EQ(store.presentTypes(), std::set<std::string>(present.begin(), present.end()));
}

INSTANTIATE_TEST_SUITE_P(Seeds, CoverageOfRandomRecords, testing::Range(1U, 13U));

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

}  // namespace
