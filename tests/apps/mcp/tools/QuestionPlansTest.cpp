// What each tool costs: the statements that it asks visit all records only where it tells their
// number.

#include "examples/Examples.h"
#include "mcp/tools/Resources.h"
#include "mcp/tools/Tools.h"
#include "platform/Files.h"
#include "platform/Locale.h"
#include "store/HealthStore.h"
#include "support/ExampleNames.h"
#include "support/Household.h"
#include "support/ToolCaller.h"
#include "support/WorkoutSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <set>
#include <sstream>
#include <string>
#include <vector>

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

/// The statements that the call makes about Ann, whose file is whole and small.
Statements statementsOf(const Household& household, const std::string& tool,
                        const Json& arguments) {
  const std::string path = household.dataRoot() / "statements.log";
  Logger log(path, Logger::Level::debug, false, [] { return testNow; });
  const Clock clock = [] { return testNow; };
  Roster roster(household.rosterFile(), log, clock);
  roster.load();
  const DigitGrouping grouping;
  const Tools::Call call{arguments, roster, log, SummaryLang::en, clock, grouping};
  if (tool.starts_with("larkspur:")) {
    Tools::readResource(tool, call);
  } else {
    Tools::answer(tool, call);
  }
  return statementsIn(path);
}

/// Calls, and the resource, of which the tool is its address.
std::vector<Example> questions() {
  std::vector<Example> all = Examples::all();
  all.push_back({"resource", "larkspur://ann/overview", Json::object()});
  return all;
}

/// Those that tell how many records there are.
const std::set<std::string> counters{"list_persons", "get_overview", "resource"};

class QuestionsOf : public testing::TestWithParam<Example> {};

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
  const Json arguments = GetParam().argumentsWith({{"workout_id", identifierOf(hourOfRunning())}});

  const Statements statements = statementsOf(household, GetParam().tool, arguments);

  const HealthStore store = database.open();
  Statements visitors;
  for (const std::string& sql : statements) {
    if (visitsAllRecords(store, sql)) visitors.insert(sql);
  }
  EXPECT_FALSE(statements.empty());
  EXPECT_EQ(visitors.size(), counters.contains(GetParam().name) ? 1U : 0U)
      << testing::PrintToString(visitors);
}

INSTANTIATE_TEST_SUITE_P(Tools, QuestionsOf, testing::ValuesIn(questions()),
                         [](const auto& test) { return suffixOf(test.param); });

}  // namespace
