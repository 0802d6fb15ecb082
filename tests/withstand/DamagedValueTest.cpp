// Rows that hold what no receiver would store.

#include "platform/Files.h"
#include "support/WellFormed.h"
#include "withstand/DamagedHousehold.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <ostream>
#include <string>
#include <vector>

namespace {

/// Columns of one table that get the odd value together.
struct Place {
  std::string table;
  std::vector<std::string> columns;
  bool namesWorkouts = false;  ///< the workout is not found any more by its identifier
};

/// The numbers of a workout, which nothing computes with but what adds them up.
const Place measures{"workouts",
                     {"distance_km",
                      "active_energy_kcal",
                      "basal_energy_kcal",
                      "hr_avg",
                      "hr_min",
                      "hr_max",
                      "elevation_m",
                      "avg_mets",
                      "indoor",
                      "temp_c",
                      "humidity_pct"}};

/// Every column that anything reads.
const std::vector<Place>& places() {
  static const std::vector<Place> all{{"records", {"type"}},
                                      {"records", {"source_name"}},
                                      {"records", {"device"}},
                                      {"records", {"unit"}},
                                      {"records", {"start_date"}},
                                      {"records", {"start_day"}},
                                      {"records", {"end_date"}},
                                      {"records", {"value"}},
                                      {"records", {"value_num"}},
                                      {"workouts", {"activity_type"}, true},
                                      {"workouts", {"source_name"}, true},
                                      {"workouts", {"start_date"}, true},
                                      {"workouts", {"start_day"}, true},
                                      {"workouts", {"end_date"}, true},
                                      {"workouts", {"duration_min"}},
                                      measures,
                                      {"workout_humidity", {"workout_id"}},
                                      {"workout_humidity", {"data"}},
                                      {"stat_sources", {"source_name"}},
                                      {"stat_sources", {"n"}},
                                      {"stat_sources", {"last"}}};
  return all;
}

/// Sets all columns of the place to `value` where `condition` holds.
std::string change(const Place& place, const std::string& value,
                   const std::string& condition = "1") {
  std::string assignments;
  for (const std::string& column : place.columns) {
    assignments += (assignments.empty() ? "" : ", ") + column + " = " + value;
  }
  return "UPDATE " + place.table + " SET " + assignments + " WHERE " + condition;
}

/// Takes the constraints from the tables, so that every column takes every value.
void loosen(TestDatabase& database) {
  for (const std::string table : {"records", "workouts", "workout_humidity", "stat_sources"}) {
    database.run("CREATE TABLE loose AS SELECT * FROM " + table + "; DROP TABLE " + table +
                 "; ALTER TABLE loose RENAME TO " + table);
  }
  database.run(
      "CREATE INDEX ix_rec_type_day ON records(type, start_day);"
      "CREATE INDEX ix_wo_day ON workouts(start_day)");
}

/// The loosened file.
const std::string& looseFile() {
  static const std::string bytes = [] {
    DamagedHousehold household;
    loosen(household.ann());
    return fileContents(household.ann().path()).value();
  }();
  return bytes;
}

struct ValueCase {
  std::string name;
  std::string sql;             ///< the value
  bool inLastRowOnly = false;  ///< of each table, else in every row
};

void PrintTo(const ValueCase& test, std::ostream* stream) { *stream << test.name; }

class OddValue : public testing::TestWithParam<ValueCase> {};

TEST_P(OddValue, IsAnsweredInEveryColumn) {
  DamagedHousehold household;
  for (const Place& place : places()) {
    SCOPED_TRACE(place.table + "." + place.columns.front());
    household.replaceAnn(looseFile());
    const std::string last = "rowid = (SELECT MAX(rowid) FROM " + place.table + ")";
    household.ann().run(change(place, GetParam().sql, GetParam().inLastRowOnly ? last : "1"));

    const DamagedHousehold::Replies replies = household.askedInShort();

    expectHonest(replies);
    for (const auto& [name, reply] : replies) {
      if (name == "get_workout_heart_rate" && place.namesWorkouts) continue;
      EXPECT_TRUE(reply.contains("result")) << name << ": " << reply;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Values, OddValue,
    testing::Values(ValueCase{"Null", "NULL"}, ValueCase{"Text", "'not a number'"},
                    ValueCase{"Infinity", "9e999"},
                    ValueCase{"BothInfinities", "(rowid % 2 * 2 - 1) * 9e999"},
                    ValueCase{"LargestNumber", "1.7976931348623157e308"},
                    ValueCase{"SmallestInteger", "-9223372036854775807 - 1"},
                    ValueCase{"InvalidUTF8", "CAST(x'41C328FFEDA080F5' AS TEXT)"},
                    ValueCase{"ZeroCharacter", "CAST(x'410042' AS TEXT)"},
                    ValueCase{"Blob", "x'00FF10'"},
                    ValueCase{"Megabyte", "printf('%.*c', 1000000, 'x')", true}),
    [](const auto& test) { return test.param.name; });

TEST(OddValueInAColumnThatNobodyReads, ChangesNothing) {
  DamagedHousehold household;
  household.replaceAnn(looseFile());
  const DamagedHousehold::Replies before = household.asked();
  household.ann().run(
      "UPDATE records SET creation_date = x'FF'; UPDATE workouts SET creation_date = 9e999;"
      "UPDATE stat_types SET n = 'none'; UPDATE stat_meta SET v = NULL");

  EXPECT_EQ(household.asked(), before);
}

/// A number that is none says as little as one that is missing.
TEST(TextInANumericColumn, CountsAsMissing) {
  DamagedHousehold household;
  const auto answersAfter = [&household](const std::string& sql) {
    household.replaceAnn(looseFile());
    household.ann().run(sql);
    return household.asked();
  };
  const std::string some = "rowid % 3 = 0";
  for (const Place& place : {Place{"records", {"value_num"}}, measures}) {
    const DamagedHousehold::Replies missing = answersAfter(change(place, "NULL", some));
    for (const std::string value : {"'not a number'", "x'31'", "''"}) {
      EXPECT_EQ(answersAfter(change(place, value, some)), missing) << place.table << value;
    }
  }
}

}  // namespace
