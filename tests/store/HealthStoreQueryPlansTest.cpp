// How SQLite goes about each statement: the record table has millions of rows, and only what counts
// them may visit them all.

#include "store/HealthStore.h"
#include "store/SeriesRecords.h"
#include "support/TestDatabase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

namespace {

using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// Asks the store for everything it can tell.
void readAll(const HealthStore& store) {
  store.coverage();
  store.recordCount();
  store.presentTypes();
  store.yearlyCounts();
  for (const MetricInfo& info : metricTable) store.series(info.metric, "2024-01-01", always);
  store.dailyTotals("StepCount", "2024-01-01", always);
  store.values("RestingHeartRate", "2024-01-01", always);
  store.latestValue("BodyMass");
  store.sleepSegments("2024-01-01", always);
  store.workoutStats("2024-01-01", always);
  store.dayDetail("2024-03-01");
  store.workouts("2024-03-01");
  const std::vector<WorkoutEntry> workouts = store.workoutDetails(std::nullopt, std::nullopt);
  store.workoutHeartRate(workouts.at(0).workout_id(), std::nullopt, 10, 0);
}

/// The statements that the store prepares while it is asked for everything.
std::set<std::string> statementsOn(const TestDatabase& database) {
  const std::filesystem::path path = database.folder().path() / "statements.log";
  Logger log(path, Logger::Level::debug, false, [] { return 0.0; });
  readAll(HealthStore(database.path(), {}, log));

  std::ifstream file(path);
  std::set<std::string> statements;
  const std::string mark = "SQL: ";
  for (std::string line; std::getline(file, line);) {
    const std::size_t start = line.find(mark);
    if (start != std::string::npos) statements.insert(line.substr(start + mark.size()));
  }
  return statements;
}

/// Each step of the plan of `sql`.
std::vector<std::string> planOf(const TestDatabase& database, const std::string& sql) {
  const HealthStore store = database.open();
  Statement explain = store.prepare("EXPLAIN QUERY PLAN " + sql);
  return explain.readAll([](const Row& row) { return row.text(3); });
}

/// A database as some receiver may have left it.
struct StateCase {
  std::string name;
  std::string sql;
};

class QueryPlans : public testing::TestWithParam<StateCase> {
protected:
  QueryPlans() {
    for (int day = 10; day < 30; ++day) {
      const std::string date = "2024-03-" + std::to_string(day);
      database.addRecords({steps(date, day), steps(date, 1, "iPhone"), heartRate(date, 60)});
    }
    database.addWorkout(
        {.start_date = "2024-03-01 08:00:00 +0000", .end_date = "2024-03-01 09:00:00 +0000"});
    if (!GetParam().sql.empty()) database.run(GetParam().sql);
  }

  TestDatabase database;
};

TEST_P(QueryPlans, VisitAllRecordsOnlyToCountThem) {
  const std::set<std::string> statements = statementsOn(database);

  EXPECT_GT(statements.size(), 15U);
  for (const std::string& sql : statements) {
    if (sql == "SELECT COUNT(*) FROM records") continue;
    SCOPED_TRACE(sql);
    EXPECT_THAT(planOf(database, sql), Each(Not(StartsWith("SCAN records"))));
  }
}

/// As QueryPlans, of databases with the index that the days are found by.
class IndexedQueryPlans : public QueryPlans {};

TEST_P(IndexedQueryPlans, CountWithoutTheTable) {
  int found = 0;
  for (const std::string& sql : statementsOn(database)) {
    if (sql.find("COUNT(*) FROM records") == std::string::npos) continue;
    ++found;
    for (const std::string& step : planOf(database, sql)) {
      if (step.find("records") == std::string::npos) continue;
      EXPECT_THAT(step, HasSubstr("records USING COVERING INDEX")) << sql;
    }
  }
  EXPECT_EQ(found, 2);
}

TEST_P(IndexedQueryPlans, SortNoRecordsOfARange) {
  int found = 0;
  for (const std::string& sql : statementsOn(database)) {
    if (sql.find("ORDER BY start_day") == std::string::npos) continue;
    ++found;
    EXPECT_THAT(planOf(database, sql), Each(Not(HasSubstr("TEMP B-TREE")))) << sql;
  }
  EXPECT_EQ(found, 2);
}

TEST_P(IndexedQueryPlans, FindADayOfATypeByBoth) {
  int found = 0;
  for (const std::string& sql : statementsOn(database)) {
    const bool asksForADay = sql.find("start_day BETWEEN") != std::string::npos ||
                             sql.find("start_day=?") != std::string::npos ||
                             sql.find("start_day = ?") != std::string::npos;
    if (!asksForADay || sql.find("workouts") != std::string::npos) continue;
    ++found;
    SCOPED_TRACE(sql);
    EXPECT_THAT(planOf(database, sql),
                Contains(HasSubstr("ix_rec_type_day (type=? AND start_day")));
  }
  EXPECT_GT(found, 5);
}

/// How often `part` stands in `text`.
int countOf(const std::string& part, const std::string& text) {
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

// The planner's trap: grouped by source, all records of a type are read by way of the unique index,
// which is a search as well. A minimum or maximum reads one record.
TEST_P(IndexedQueryPlans, ReadNoTypeInFull) {
  int found = 0;
  for (const std::string& sql : statementsOn(database)) {
    int wholeTypes = 0;
    for (const std::string& step : planOf(database, sql)) {
      if (step.find(" records ") == std::string::npos) continue;
      wholeTypes += countOf("(type=?)", step) + countOf("(type>?)", step);
    }
    EXPECT_LE(wholeTypes, countOf("MIN(", sql) + countOf("MAX(", sql)) << sql;
    found += wholeTypes;
  }
  EXPECT_GT(found, 5);
}

const std::vector<StateCase> indexedStates{
    {"Migrated", ""},
    {"WithoutStatistics", "DROP TABLE stat_types; DROP TABLE stat_sources; DROP TABLE stat_meta"},
    {"Analysed", "ANALYZE"},
    {"WithoutHumidity", "DROP TABLE workout_humidity"},
    // Days that are no days, and one that only SQLite can tell the year of.
    {"OddDays",
     "UPDATE records SET start_day = CAST(X'323032342D30332D3135FF' AS TEXT) "
     "WHERE start_day = '2024-03-15'; "
     "UPDATE records SET start_day = '二〇二四年' WHERE start_day = '2024-03-16'"}};

std::string nameOf(const testing::TestParamInfo<StateCase>& test) { return test.param.name; }

INSTANTIATE_TEST_SUITE_P(Databases, QueryPlans, testing::ValuesIn(indexedStates), nameOf);
INSTANTIATE_TEST_SUITE_P(WithoutTheIndex, QueryPlans,
                         testing::Values(StateCase{"WithoutTheIndex",
                                                   "DROP INDEX ix_rec_type_day"}),
                         nameOf);
INSTANTIATE_TEST_SUITE_P(Databases, IndexedQueryPlans, testing::ValuesIn(indexedStates), nameOf);

}  // namespace
