#include "withstand/Columns.h"
#include "platform/Files.h"
#include "withstand/DamagedHousehold.h"

#include <algorithm>

namespace {

const Names samples = questionsTo("get_workout_heart_rate");
const Names lists = questionsTo("get_workouts");
const Names day = questionsTo("get_day");
const Names comparison = questionsTo("compare_periods");
const Names overviews = questionsTo("get_overview") + Names{"resources/read"};
const Names trends = questionsTo("get_trend");
const Names nights{"get_trend sleep"};
const Names values = trends - nights + day + comparison + samples;

}  // namespace

const Place& numbersOfWorkouts() {
  static const Place place{.table = "workouts",
                           .columns = {"distance_km",
                                       "active_energy_kcal",
                                       "basal_energy_kcal",
                                       "hr_avg",
                                       "hr_min",
                                       "hr_max",
                                       "elevation_m",
                                       "avg_mets",
                                       "indoor",
                                       "temp_c",
                                       "humidity_pct"},
                           .readers = lists + day + samples,
                           .holdsNumbers = true};
  return place;
}

const Place& numbersOfRecords() {
  static const Place place{.table = "records",
                           .columns = {"value_num"},
                           .readers = values + overviews,
                           .emptied = values,
                           .holdsNumbers = true};
  return place;
}

const std::vector<Place>& places() {
  const Names ofWorkouts = lists + overviews + day + samples;
  static const std::vector<Place> all{
      {.table = "records",
       .columns = {"type"},
       .readers = allQuestions(),
       .emptied = trends + comparison + samples},
      {.table = "records",
       .columns = {"source_name"},
       .readers = samples,
       .grouping = overviews + day + Names{"get_trend steps"},
       .emptied = samples},
      {.table = "records", .columns = {"device"}, .readers = samples},
      {.table = "records", .columns = {"unit"}, .readers = day + samples, .emptied = samples},
      {.table = "records",
       .columns = {"start_date"},
       .readers = overviews + nights + samples,
       .emptied = nights + samples},
      {.table = "records",
       .columns = {"start_day"},
       .readers = allQuestions(),
       .emptied = trends + values},
      {.table = "records",
       .columns = {"end_date"},
       .readers = overviews + nights + samples,
       .emptied = nights},
      {.table = "records",
       .columns = {"value"},
       .readers = overviews + nights + samples,
       .emptied = nights},
      numbersOfRecords(),
      {.table = "workouts",
       .columns = {"activity_type"},
       .readers = ofWorkouts,
       .namesWorkouts = true},
      {.table = "workouts",
       .columns = {"source_name"},
       .readers = lists + samples,
       .namesWorkouts = true},
      {.table = "workouts",
       .columns = {"start_date"},
       .readers = lists + samples,
       .namesWorkouts = true},
      {.table = "workouts",
       .columns = {"start_day"},
       .readers = ofWorkouts,
       .emptied = lists,
       .namesWorkouts = true},
      {.table = "workouts",
       .columns = {"end_date"},
       .readers = lists + samples,
       .namesWorkouts = true},
      {.table = "workouts",
       .columns = {"duration_min"},
       .readers = ofWorkouts,
       .holdsNumbers = true},
      numbersOfWorkouts(),
      {.table = "workout_humidity", .columns = {"workout_id"}, .readers = lists + samples},
      {.table = "workout_humidity", .columns = {"data"}, .readers = lists + samples},
      {.table = "stat_sources", .columns = {"source_name"}, .readers = overviews},
      {.table = "stat_sources", .columns = {"n"}, .readers = {}},
      {.table = "stat_sources", .columns = {"last"}, .readers = {}}};
  return all;
}

std::string change(const Place& place, const std::string& value, const std::string& condition) {
  std::string assignments;
  for (const std::string& column : place.columns) {
    assignments += (assignments.empty() ? "" : ", ") + column + " = " + value;
  }
  return "UPDATE " + place.table + " SET " + assignments + " WHERE " + condition;
}

std::vector<std::string> tablesOf(const TestDatabase& database) {
  const Database connection = database.writer();
  return connection.prepare("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name")
      .readAll([](const Row& row) { return row.text(0); });
}

namespace {

std::vector<std::string> columnsOf(const TestDatabase& database, const std::string& table) {
  const Database connection = database.writer();
  return connection.prepare("SELECT name FROM pragma_table_info('" + table + "')")
      .readAll([](const Row& row) { return row.text(0); });
}

}  // namespace

Place unreadOf(const TestDatabase& database, const std::string& table) {
  Place unread{.table = table, .columns = columnsOf(database, table), .readers = {}};
  for (const Place& place : places()) {
    if (place.table != table) continue;
    std::erase_if(unread.columns, [&place](const std::string& column) {
      return std::ranges::find(place.columns, column) != place.columns.end();
    });
  }
  return unread;
}

namespace {

/// Takes the constraints from the tables, so that every column takes every value, and gives an
/// empty one two rows of nothing.
void loosen(TestDatabase& database) {
  for (const std::string& table : tablesOf(database)) {
    database.run("CREATE TABLE loose AS SELECT * FROM " + table + "; DROP TABLE " + table +
                 "; ALTER TABLE loose RENAME TO " + table);
    const Database connection = database.writer();
    if (connection.prepare("SELECT 1 FROM " + table).next()) continue;
    database.run("INSERT INTO " + table + " DEFAULT VALUES; INSERT INTO " + table +
                 " DEFAULT VALUES");
  }
  database.run(
      "CREATE INDEX ix_rec_type_day ON records(type, start_day);"
      "CREATE INDEX ix_wo_day ON workouts(start_day)");
}

}  // namespace

const std::string& looseFile() {
  static const std::string bytes = [] {
    DamagedHousehold household;
    loosen(household.ann());
    return fileContents(household.ann().path()).value();
  }();
  return bytes;
}
