// What each tool costs: the statements that it asks visit all records only where it tells their
// number.

#include "mcp/tools/Resources.h"
#include "mcp/tools/Tools.h"
#include "platform/Files.h"
#include "store/HealthStore.h"
#include "support/Household.h"
#include "support/ToolCaller.h"
#include "support/WorkoutSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <ostream>
#include <set>
#include <sstream>
#include <string>

namespace {

using Json = nlohmann::json;
using Statements = std::multiset<std::string>;

/// The statements in the log at `path`.
Statements statementsIn(const std::string& path) {
  std::istringstream lines(fileContents(path).value());
  const std::string mark = " SQL: ";
  Statements statements;
  for (std::string line; std::getline(lines, line);) {
    const std::size_t found = line.find(mark);
    if (found != std::string::npos) statements.insert(line.substr(found + mark.size()));
  }
  return statements;
}

/// Whether `sql` visits every record: it scans the table or an index of it, or it counts each of
/// the ranges that make up all.
bool visitsAllRecords(const HealthStore& store, const std::string& sql) {
  if (sql.find("COUNT(*) FROM records") != std::string::npos) return true;
  Statement explain = store.prepare("EXPLAIN QUERY PLAN " + sql);
  bool scans = false;
  while (const std::optional<Row> row = explain.next()) {
    scans |= row->text(3).starts_with("SCAN records");
  }
  return scans;
}

struct ToolCase {
  std::string name;
  std::string tool;  ///< or the address of a resource
  Json arguments;
  int counts = 0;  ///< statements that visit every record
};

void PrintTo(const ToolCase& test, std::ostream* stream) { *stream << test.name; }

class QuestionsOf : public testing::TestWithParam<ToolCase> {};

TEST_P(QuestionsOf, VisitAllRecordsOnlyToCountThemOnce) {
  Household household;
  TestDatabase& database = household.add("ann", "Ann");
  for (int day = 10; day < 30; ++day) {
    const std::string date = "2024-03-" + std::to_string(day);
    database.addRecords({{.type = "StepCount", .start_day = date, .value_num = day},
                         {.type = "HeartRate", .start_day = date, .value_num = 60},
                         {.type = "SleepAnalysis", .start_day = date}});
  }
  database.addWorkout(hourOfRunning());
  const std::string path = household.dataRoot() / "statements.log";
  {
    Logger log(path, Logger::Level::debug, false, [] { return testNow; });
    const Clock clock = [] { return testNow; };
    Roster roster(household.rosterFile(), log, clock);
    roster.load();
    const DigitGrouping grouping;
    const Tools::Call call{GetParam().arguments, roster, log, SummaryLang::en, clock, grouping};
    if (GetParam().tool.starts_with("larkspur:")) {
      Tools::readResource(GetParam().tool, call);
    } else {
      Tools::answer(GetParam().tool, call);
    }
  }

  const Statements statements = statementsIn(path);

  const HealthStore store = database.open();
  Statements visitors;
  for (const std::string& sql : statements) {
    if (visitsAllRecords(store, sql)) visitors.insert(sql);
  }
  EXPECT_FALSE(statements.empty());
  EXPECT_EQ(visitors.size(), static_cast<std::size_t>(GetParam().counts))
      << testing::PrintToString(visitors);
}

INSTANTIATE_TEST_SUITE_P(
    Tools, QuestionsOf,
    testing::Values(ToolCase{"ListPersonsCounts", "list_persons", Json::object(), 1},
                    ToolCase{"OverviewCounts", "get_overview", Json::object(), 1},
                    ToolCase{"ResourceCounts", "larkspur://ann/overview", Json::object(), 1},
                    ToolCase{"TrendOfTotals", "get_trend", {{"metric", "steps"}}},
                    ToolCase{"TrendOfMedians", "get_trend", {{"metric", "heart_rate"}}},
                    ToolCase{"TrendOfNights", "get_trend", {{"metric", "sleep"}}},
                    ToolCase{"Day", "get_day", {{"date", "2024-03-12"}}},
                    ToolCase{"Comparison",
                             "compare_periods",
                             {{"metric", "steps"},
                              {"a_from", "2024-03-01"},
                              {"a_to", "2024-03-14"},
                              {"b_from", "2024-03-15"},
                              {"b_to", "2024-03-31"}}},
                    ToolCase{"WorkoutsAsText", "get_workouts", Json::object()},
                    ToolCase{"WorkoutsAsJson", "get_workouts", {{"format", "json"}}},
                    ToolCase{"WorkoutHeartRate",
                             "get_workout_heart_rate",
                             {{"workout_id", identifierOf(hourOfRunning())}}}),
    [](const auto& test) { return test.param.name; });

}  // namespace
