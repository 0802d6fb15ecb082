// A database that someone else keeps for himself.

#include "platform/Files.h"
#include "support/ToolCaller.h"
#include "support/WellFormed.h"
#include "withstand/DamagedHousehold.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>

namespace {

constexpr int shortPatienceMilliseconds = 20;

TEST(LockedFile, IsRefusedWhenPatienceEndsAndReadAgainLater) {
  DamagedHousehold household;
  Database owner = household.ann().writer();
  owner.exec("BEGIN EXCLUSIVE");

  const DamagedHousehold::Replies meanwhile = household.asked(shortPatienceMilliseconds);
  owner.exec("COMMIT");

  expectRefused(meanwhile, "prepare 失败:database is locked");
  EXPECT_EQ(household.asked(shortPatienceMilliseconds), DamagedHousehold::wholeReplies());
}

TEST(LockedFile, IsRefusedWhileAWriterKeepsTheLogToItself) {
  DamagedHousehold household;
  DamagedHousehold::Replies meanwhile;
  {
    Database owner = household.ann().writer();
    owner.exec("PRAGMA locking_mode=EXCLUSIVE; PRAGMA journal_mode=WAL; BEGIN IMMEDIATE");
    meanwhile = household.asked(shortPatienceMilliseconds);
  }

  expectRefused(meanwhile, "prepare 失败:database is locked");
  EXPECT_EQ(household.asked(shortPatienceMilliseconds), DamagedHousehold::wholeReplies());
}

TEST(LockedFile, KeepsNoReaderOutWhileItIsWrittenToALog) {
  DamagedHousehold household;
  Database owner = household.ann().writer();
  owner.exec("PRAGMA journal_mode=WAL; BEGIN EXCLUSIVE; DELETE FROM records");

  const DamagedHousehold::Replies meanwhile = household.asked(shortPatienceMilliseconds);
  owner.exec("ROLLBACK");

  EXPECT_EQ(meanwhile, DamagedHousehold::wholeReplies());
}

struct QueryCase {
  std::string name;
  void (*ask)(const HealthStore& store);
};

void PrintTo(const QueryCase& test, std::ostream* stream) { *stream << test.name; }

class LockedFileQuery : public testing::TestWithParam<QueryCase> {};

/// Each statement would wait for the lock once more, a minute each time.
TEST_P(LockedFileQuery, TriesNoSecondStatement) {
  TestDatabase database;
  Database owner = database.useRollbackJournal().writer();
  owner.exec("BEGIN EXCLUSIVE");
  const TemporaryFolder folder;
  Logger log(folder / "queries.log", Logger::Level::debug, false, [] { return testNow; });
  const HealthStore store(database.path(), {.patienceMilliseconds = 1}, log);

  EXPECT_THROW(GetParam().ask(store), ReceiverError);

  const std::string tried = fileContents(folder / "queries.log").value();
  EXPECT_EQ(tried.find(" SQL: "), tried.rfind(" SQL: ")) << tried;
  EXPECT_NE(tried.find(" SQL: "), std::string::npos) << tried;
}

constexpr const char* from = "2024-02-01";
constexpr const char* to = "2024-03-17";

INSTANTIATE_TEST_SUITE_P(
    Queries, LockedFileQuery,
    testing::Values(
        QueryCase{"Steps", [](const auto& store) { store.series(HealthMetric::steps, from, to); }},
        QueryCase{"HeartRate",
                  [](const auto& store) { store.series(HealthMetric::heartRate, from, to); }},
        QueryCase{"Sleep", [](const auto& store) { store.series(HealthMetric::sleep, from, to); }},
        QueryCase{"Day", [](const auto& store) { store.dayDetail(to); }},
        QueryCase{"WorkoutsOfADay", [](const auto& store) { store.workouts(to); }},
        QueryCase{"Workouts", [](const auto& store) { store.workoutDetails(from, to); }},
        QueryCase{"WorkoutHeartRate",
                  [](const auto& store) {
                    store.workoutHeartRate(DamagedHousehold::workoutID(), std::nullopt, 1, 0);
                  }},
        QueryCase{"Coverage", [](const auto& store) { store.coverage(); }},
        QueryCase{"Days", [](const auto& store) { store.recordedDays(); }},
        QueryCase{"Count", [](const auto& store) { store.recordCount(); }},
        QueryCase{"Types", [](const auto& store) { store.presentTypes(); }},
        QueryCase{"Years", [](const auto& store) { store.yearlyCounts(); }},
        QueryCase{"Totals", [](const auto& store) { store.dailyTotals("StepCount", from, to); }},
        QueryCase{"Values", [](const auto& store) { store.values("HeartRate", from, to); }},
        QueryCase{"LatestValue", [](const auto& store) { store.latestValue("HeartRate"); }},
        QueryCase{"SleepSegments", [](const auto& store) { store.sleepSegments(from, to); }},
        QueryCase{"WorkoutStats", [](const auto& store) { store.workoutStats(from, to); }}),
    [](const auto& test) { return test.param.name; });

/// A call that is under way holds one state of the file, and a writer goes on beside it.
TEST(LockedFile, IsNotLockedByACall) {
  DamagedHousehold household;
  household.ann().run("PRAGMA journal_mode=WAL");
  const HealthStore call = household.ann().open();
  const std::int64_t before = call.recordCount();

  Database writer(household.ann().path(),
                  {.create = false, .readOnly = false, .patienceMilliseconds = 0});
  writer.exec("BEGIN IMMEDIATE; DELETE FROM records WHERE rowid <= 10; COMMIT");

  EXPECT_EQ(call.recordCount(), before);
  EXPECT_EQ(household.ann().open().recordCount(), before - 10);
}

}  // namespace
