// Files whose tables are missing, older than the program, or something else.

#include "platform/Files.h"
#include "support/WellFormed.h"
#include "withstand/DamagedHousehold.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

namespace {

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

const Names lists = questionsTo("get_workouts");
const Names samples = questionsTo("get_workout_heart_rate");
const Names ofWorkouts = questionsTo("get_day") + lists + samples;
const Names overviews = questionsTo("get_overview") + Names{"resources/read"};
const Names persons = questionsTo("list_persons");
const Names ofRecords = allQuestions() - persons;

/// Fails the test unless the store refuses exactly what the case says, in such words, and exactly
/// those of the other answers change that the case says.
void expectOnly(const TableCase& test, const testing::Matcher<std::string>& message,
                const DamagedHousehold::Replies& replies) {
  EXPECT_EQ(refused(replies), test.refused);
  Names others = changed(replies);
  for (const std::string& name : test.refused) {
    const std::string said = messageOf(replies.at(name));
    EXPECT_THAT(said, message) << name;
    EXPECT_EQ(replies.at(name).value("error", nlohmann::json()), storeError(name, said)) << name;
    others.erase(name);
  }
  EXPECT_EQ(others, test.changed);
  if (others.contains("list_persons")) expectAnnWithoutData(replies);
}

const std::vector<TableCase> tables{{"records", ofRecords, persons},
                                    {"workouts", ofWorkouts, overviews},
                                    {"workout_humidity", {}, lists},
                                    {"stat_sources", {}, {}},
                                    {"stat_types", {}, {}},
                                    {"stat_meta", {}, {}},
                                    {"imports", {}, {}},
                                    {"activity_summary", {}, {}},
                                    {"ecg", {}, {}},
                                    {"ecg_samples", {}, {}},
                                    {"routes", {}, {}},
                                    {"route_points", {}, {}}};

std::string nameOf(const testing::TestParamInfo<TableCase>& test) { return test.param.table; }

class MissingTable : public testing::TestWithParam<TableCase> {};

TEST_P(MissingTable, IsMissedOnlyByThoseWhoReadIt) {
  DamagedHousehold household;
  household.ann().run("DROP TABLE " + GetParam().table);

  expectOnly(GetParam(), "prepare 失败:no such table: " + GetParam().table, household.asked());
}

INSTANTIATE_TEST_SUITE_P(Tables, MissingTable, testing::ValuesIn(tables), nameOf);

/// A view is refused where a missing table would be, and done without where one would be.
class ViewInATablesPlace : public testing::TestWithParam<TableCase> {};

TEST_P(ViewInATablesPlace, IsNotLookedInto) {
  DamagedHousehold household;
  household.ann().run("PRAGMA legacy_alter_table=ON; ALTER TABLE " + GetParam().table +
                      " RENAME TO kept; CREATE VIEW " + GetParam().table +
                      " AS SELECT * FROM kept");

  expectOnly(GetParam(),
             "prepare 失败:access to view \"" + GetParam().table + "\" prohibited",
             household.asked());
}

/// A view of rows without end: whoever counts them never comes back.
TEST_P(ViewInATablesPlace, HoldsNobodyUp) {
  DamagedHousehold household;
  household.ann().run("DROP TABLE " + GetParam().table + "; CREATE VIEW " + GetParam().table +
                      " AS WITH RECURSIVE r(type) AS (SELECT 'StepCount' UNION ALL "
                      "SELECT type FROM r) SELECT type, type AS source_name, 1 AS n FROM r");

  // SQLite prohibits the view and then complains of what is in it.
  expectOnly(GetParam(), testing::StartsWith("prepare 失败:"), household.asked());
}

INSTANTIATE_TEST_SUITE_P(Tables, ViewInATablesPlace, testing::ValuesIn(tables), nameOf);

/// Gives Ann a table of a module in the place of `table`. No connection of ours makes one, so the
/// statement of a plain table is overwritten by one of the same length.
void replaceByVirtualTable(DamagedHousehold& household, const std::string& table,
                           const std::string& module) {
  const std::string columns = "(type, source_name, start_day";
  const std::string wanted = "CREATE VIRTUAL TABLE " + table + " USING " + module + columns + ")";
  std::string plain = "CREATE TABLE " + table + columns;
  plain.append(wanted.size() - plain.size() - 1, ' ').append(")");
  household.ann().run("DROP TABLE " + table + "; " + plain);
  std::string bytes = fileContents(household.ann().path()).value();
  const std::size_t place = bytes.find(plain);
  ASSERT_NE(place, std::string::npos);
  household.replaceAnn(bytes.replace(place, wanted.size(), wanted));
}

/// A module's code would run over what anybody may have stored for it.
class VirtualTableInATablesPlace : public testing::TestWithParam<TableCase> {};

TEST_P(VirtualTableInATablesPlace, IsRefused) {
  for (const std::string module : {"fts5", "rtree"}) {
    DamagedHousehold household;
    replaceByVirtualTable(household, GetParam().table, module);

    expectOnly(GetParam(), "prepare 失败:no such module: " + module, household.asked());
  }
}

INSTANTIATE_TEST_SUITE_P(Tables, VirtualTableInATablesPlace,
                         testing::Values(TableCase{"records", ofRecords, persons},
                                         TableCase{"workouts", ofWorkouts, overviews},
                                         TableCase{"workout_humidity", lists + samples, {}},
                                         TableCase{"stat_sources", overviews, {}},
                                         TableCase{"imports", {}, {}}),
                         nameOf);

TEST(OlderFile, IsAnsweredWithoutWhatItNeverHad) {
  DamagedHousehold household;
  household.ann().run(
      "ALTER TABLE imports DROP COLUMN types;"
      "DROP TABLE workout_humidity;"
      "DROP TABLE stat_types; DROP TABLE stat_sources; DROP TABLE stat_meta");

  const DamagedHousehold::Replies replies = household.asked();

  EXPECT_EQ(refused(replies), Names{});
  EXPECT_EQ(changed(replies), lists);
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
