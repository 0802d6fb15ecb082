// Files whose tables are missing, older than the program, or something else.

#include "support/WellFormed.h"
#include "withstand/DamagedHousehold.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <set>
#include <string>
#include <vector>

namespace {

using Names = std::set<std::string>;

/// The questions whose answer is now an error.
Names refused(const DamagedHousehold::Replies& replies) {
  Names names;
  for (const auto& [name, reply] : replies) {
    if (reply.contains("error")) names.insert(name);
  }
  return names;
}

/// The questions whose answer differs from what it is as long as nothing is damaged.
Names changed(const DamagedHousehold::Replies& replies) {
  Names names;
  for (const auto& [name, reply] : replies) {
    if (reply != DamagedHousehold::wholeReplies().at(name)) names.insert(name);
  }
  return names;
}

struct TableCase {
  std::string table;
  Names refused;  ///< by which questions; no other answer changes but those of `changed`
  Names changed;
};

void PrintTo(const TableCase& test, std::ostream* stream) { *stream << test.table; }

const Names all{"get_overview",
                "get_trend steps",
                "get_trend heart_rate",
                "get_trend sleep",
                "get_day",
                "get_workouts text",
                "get_workouts json",
                "get_workout_heart_rate",
                "compare_periods",
                "resources/read"};
const Names ofWorkouts{
    "get_day", "get_workouts text", "get_workouts json", "get_workout_heart_rate"};
const Names overviews{"get_overview", "resources/read"};
const Names workoutLists{"get_workouts text", "get_workouts json"};

class MissingTable : public testing::TestWithParam<TableCase> {};

TEST_P(MissingTable, IsMissedOnlyByThoseWhoReadIt) {
  DamagedHousehold household;
  household.ann().run("DROP TABLE " + GetParam().table);

  const DamagedHousehold::Replies replies = household.asked();

  EXPECT_EQ(refused(replies), GetParam().refused);
  for (const std::string& name : GetParam().refused) {
    EXPECT_EQ(messageOf(replies.at(name)), "prepare 失败:no such table: " + GetParam().table);
  }
  Names others = changed(replies);
  for (const std::string& name : GetParam().refused) others.erase(name);
  EXPECT_EQ(others, GetParam().changed);
}

class ViewInATablesPlace : public testing::TestWithParam<TableCase> {};

TEST_P(ViewInATablesPlace, IsNotLookedInto) {
  DamagedHousehold household;
  household.ann().run("PRAGMA legacy_alter_table=ON; ALTER TABLE " + GetParam().table +
                      " RENAME TO kept; CREATE VIEW " + GetParam().table +
                      " AS SELECT rowid, * FROM kept");

  const DamagedHousehold::Replies replies = household.asked();

  EXPECT_EQ(refused(replies), GetParam().refused);
  for (const std::string& name : GetParam().refused) {
    EXPECT_EQ(messageOf(replies.at(name)),
              "prepare 失败:access to view \"" + GetParam().table + "\" prohibited");
  }
}

/// A view of rows without end: whoever counts them never comes back.
TEST_P(ViewInATablesPlace, HoldsNobodyUp) {
  DamagedHousehold household;
  household.ann().run("DROP TABLE " + GetParam().table + "; CREATE VIEW " + GetParam().table +
                      " AS WITH RECURSIVE r(type) AS (SELECT 'StepCount' UNION ALL "
                      "SELECT type FROM r) SELECT type, type AS source_name, 1 AS n FROM r");

  EXPECT_EQ(refused(household.asked()), GetParam().refused);
}

INSTANTIATE_TEST_SUITE_P(
    Tables, MissingTable,
    testing::Values(TableCase{"records", all, {"list_persons"}},
                    TableCase{"workouts", ofWorkouts, overviews},
                    TableCase{"workout_humidity", {}, workoutLists},
                    TableCase{"stat_sources", {}, {}}, TableCase{"stat_types", {}, {}},
                    TableCase{"stat_meta", {}, {}}, TableCase{"imports", {}, {}},
                    TableCase{"activity_summary", {}, {}}, TableCase{"ecg", {}, {}},
                    TableCase{"ecg_samples", {}, {}}, TableCase{"routes", {}, {}},
                    TableCase{"route_points", {}, {}}),
    [](const auto& test) { return test.param.table; });

INSTANTIATE_TEST_SUITE_P(Tables, ViewInATablesPlace,
                         testing::Values(TableCase{"records", all, {}},
                                         TableCase{"workouts", ofWorkouts, {}},
                                         TableCase{"workout_humidity", {}, {}},
                                         TableCase{"stat_sources", {}, {}},
                                         TableCase{"imports", {}, {}}),
                         [](const auto& test) { return test.param.table; });

TEST(OlderFile, IsAnsweredWithoutWhatItNeverHad) {
  DamagedHousehold household;
  household.ann().run(
      "ALTER TABLE imports DROP COLUMN types;"
      "DROP TABLE workout_humidity;"
      "DROP TABLE stat_types; DROP TABLE stat_sources; DROP TABLE stat_meta");

  const DamagedHousehold::Replies replies = household.asked();

  EXPECT_EQ(refused(replies), Names{});
  EXPECT_EQ(changed(replies), workoutLists);
  const nlohmann::json list = nlohmann::json::parse(textOf(replies.at("get_workouts json")));
  for (const nlohmann::json& workout : list.at("workouts")) {
    EXPECT_EQ(workout.at("humidity_status"), "legacy_unverified");
  }
}

TEST(OlderFile, NeedsNoIndex) {
  DamagedHousehold household;
  household.ann().run("DROP INDEX ix_rec_type_day; DROP INDEX ix_wo_day");

  EXPECT_EQ(changed(household.asked()), Names{});
}

}  // namespace
