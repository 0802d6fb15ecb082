// What a migrated database is made of.

#include "store/StoreFiles.h"
#include "support/TestDatabase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using testing::StartsWith;

struct TableCase {
  std::string name;
  std::vector<std::string> columns;  ///< name, type, "1" when NOT NULL, place in the primary key
};

class Table : public testing::TestWithParam<TableCase> {};

TEST_P(Table, HasItsColumns) {
  const TestDatabase database;
  EXPECT_EQ(
      rowsOf(database,
             "SELECT name, type, \"notnull\", pk FROM pragma_table_info('" + GetParam().name + "')",
             4),
      GetParam().columns);
}

INSTANTIATE_TEST_SUITE_P(
    Schema, Table,
    testing::Values(
        TableCase{"imports",
                  {"id|INTEGER|0|1",
                   "imported_at|TEXT|1|0",
                   "source_file|TEXT|1|0",
                   "source_bytes|INTEGER|0|0",
                   "n_records|INTEGER|0|0",
                   "n_workouts|INTEGER|0|0",
                   "n_summary|INTEGER|0|0",
                   "n_ecg|INTEGER|0|0",
                   "n_routes|INTEGER|0|0",
                   "types|TEXT|0|0"}},
        TableCase{"records",
                  {"type|TEXT|1|0",
                   "source_name|TEXT|0|0",
                   "device|TEXT|0|0",
                   "unit|TEXT|0|0",
                   "start_date|TEXT|1|0",
                   "start_day|TEXT|0|0",
                   "end_date|TEXT|0|0",
                   "creation_date|TEXT|0|0",
                   "value|TEXT|0|0",
                   "value_num|REAL|0|0"}},
        TableCase{"workouts",
                  {"activity_type|TEXT|0|0",
                   "duration_min|REAL|0|0",
                   "source_name|TEXT|0|0",
                   "start_date|TEXT|1|0",
                   "start_day|TEXT|0|0",
                   "end_date|TEXT|0|0",
                   "creation_date|TEXT|0|0",
                   "distance_km|REAL|0|0",
                   "active_energy_kcal|REAL|0|0",
                   "basal_energy_kcal|REAL|0|0",
                   "hr_avg|REAL|0|0",
                   "hr_min|REAL|0|0",
                   "hr_max|REAL|0|0",
                   "elevation_m|REAL|0|0",
                   "avg_mets|REAL|0|0",
                   "indoor|INTEGER|0|0",
                   "temp_c|REAL|0|0",
                   "humidity_pct|REAL|0|0"}},
        TableCase{"activity_summary",
                  {"date|TEXT|0|1",
                   "active_energy|REAL|0|0",
                   "active_energy_goal|REAL|0|0",
                   "active_energy_unit|TEXT|0|0",
                   "move_time|REAL|0|0",
                   "move_time_goal|REAL|0|0",
                   "exercise_time|REAL|0|0",
                   "exercise_time_goal|REAL|0|0",
                   "stand_hours|REAL|0|0",
                   "stand_hours_goal|REAL|0|0"}},
        TableCase{"ecg",
                  {"id|INTEGER|0|1",
                   "file|TEXT|1|0",
                   "person|TEXT|0|0",
                   "birth_date|TEXT|0|0",
                   "recorded_at|TEXT|0|0",
                   "classification|TEXT|0|0",
                   "symptoms|TEXT|0|0",
                   "sw_version|TEXT|0|0",
                   "device|TEXT|0|0",
                   "sample_rate_hz|REAL|0|0",
                   "lead|TEXT|0|0",
                   "unit|TEXT|0|0",
                   "n_samples|INTEGER|0|0",
                   "duration_s|REAL|0|0"}},
        TableCase{"ecg_samples", {"ecg_id|INTEGER|1|1", "idx|INTEGER|1|2", "uv|REAL|0|0"}},
        TableCase{"routes",
                  {"id|INTEGER|0|1",
                   "file|TEXT|1|0",
                   "name|TEXT|0|0",
                   "start_time|TEXT|0|0",
                   "end_time|TEXT|0|0",
                   "n_points|INTEGER|0|0",
                   "duration_s|REAL|0|0",
                   "distance_m|REAL|0|0",
                   "ele_gain_m|REAL|0|0",
                   "ele_min|REAL|0|0",
                   "ele_max|REAL|0|0",
                   "avg_speed_ms|REAL|0|0",
                   "max_speed_ms|REAL|0|0"}},
        TableCase{"route_points",
                  {"route_id|INTEGER|1|1",
                   "idx|INTEGER|1|2",
                   "time|TEXT|0|0",
                   "lat|REAL|0|0",
                   "lon|REAL|0|0",
                   "ele|REAL|0|0",
                   "speed|REAL|0|0",
                   "course|REAL|0|0",
                   "hacc|REAL|0|0",
                   "vacc|REAL|0|0"}},
        TableCase{"workout_humidity", {"workout_id|TEXT|0|1", "data|TEXT|1|0"}},
        TableCase{"stat_types", {"type|TEXT|0|1", "n|INTEGER|1|0", "last|TEXT|0|0"}},
        TableCase{"stat_sources", {"source_name|TEXT|0|1", "n|INTEGER|1|0", "last|TEXT|0|0"}},
        TableCase{"stat_meta", {"k|TEXT|0|1", "v|TEXT|0|0"}}),
    [](const auto& test) { return test.param.name; });

TEST(Schema, HasTheseTablesAndIndexesAndNoOthers) {
  const TestDatabase database;
  EXPECT_EQ(rowsOf(database,
                   "SELECT type, name, tbl_name FROM sqlite_master WHERE name NOT LIKE 'sqlite_%' "
                   "ORDER BY 1, 2",
                   3),
            (std::vector<std::string>{"index|ix_rec_type_day|records",
                                      "index|ix_wo_day|workouts",
                                      "table|activity_summary|activity_summary",
                                      "table|ecg|ecg",
                                      "table|ecg_samples|ecg_samples",
                                      "table|imports|imports",
                                      "table|records|records",
                                      "table|route_points|route_points",
                                      "table|routes|routes",
                                      "table|stat_meta|stat_meta",
                                      "table|stat_sources|stat_sources",
                                      "table|stat_types|stat_types",
                                      "table|workout_humidity|workout_humidity",
                                      "table|workouts|workouts"}));
  EXPECT_EQ(rowsOf(database, "SELECT name FROM pragma_index_info('ix_rec_type_day')", 1),
            (std::vector<std::string>{"type", "start_day"}));
  EXPECT_EQ(rowsOf(database, "SELECT name FROM pragma_index_info('ix_wo_day')", 1),
            (std::vector<std::string>{"start_day"}));
}

TEST(Schema, HoldsEveryRecordOnce) {
  TestDatabase database;
  const TestRecord record{.end_date = "2024-03-01 08:01:00 +0000", .value = "60"};
  database.addRecord(record);
  EXPECT_EQ(failureOf([&] { database.addRecord(record); }),
            "读取失败:UNIQUE constraint failed: records.type, records.source_name, "
            "records.start_date, records.end_date, records.value");
}

TEST(Schema, HoldsEveryWorkoutOnce) {
  TestDatabase database;
  const TestWorkout workout{.end_date = "2024-03-01 09:00:00 +0000"};
  database.addWorkout(workout);
  EXPECT_EQ(failureOf([&] { database.addWorkout(workout); }),
            "读取失败:UNIQUE constraint failed: workouts.activity_type, workouts.source_name, "
            "workouts.start_date, workouts.end_date");
}

TEST(Schema, KeepsSamplesAndPointsWithoutRowNumbers) {
  const TestDatabase database;
  const Database connection = database.writer();
  for (const char* table : {"ecg_samples", "route_points"}) {
    EXPECT_EQ(failureOf([&] { connection.prepare(std::string("SELECT rowid FROM ") + table); }),
              "prepare 失败:no such column: rowid")
        << table;
  }
}

TEST(Migration, UsesAWriteAheadLog) {
  const TestDatabase database;
  EXPECT_EQ(rowsOf(database, "PRAGMA journal_mode", 1), std::vector<std::string>{"wal"});
}

TEST(Migration, MarksTheStatisticsOfAnEmptyDatabaseAsBuilt) {
  const TestDatabase database;
  EXPECT_EQ(rowsOf(database, "SELECT k, v FROM stat_meta", 2), std::vector<std::string>{"built|1"});
}

TEST(Migration, DoesNotMarkTheStatisticsOfADatabaseWithRecords) {
  TestDatabase database;
  database.addRecord({}).run("DELETE FROM stat_meta");

  migrate(database);

  EXPECT_TRUE(rowsOf(database, "SELECT k FROM stat_meta", 1).empty());
}

TEST(Migration, LeavesAMarkThatIsThere) {
  TestDatabase database;
  database.run("UPDATE stat_meta SET v = '0'");

  migrate(database);

  EXPECT_EQ(rowsOf(database, "SELECT k, v FROM stat_meta", 2), std::vector<std::string>{"built|0"});
}

TEST(Migration, ChangesNothingTheSecondTime) {
  TestDatabase database;
  database.addRecord({.value_num = 60}).addWorkout({}).addSources({{}}).addHumidity("w_1", "{}");
  const std::vector<std::string> before = schemaOf(database);

  migrate(database);

  EXPECT_EQ(schemaOf(database), before);
  for (const char* table :
       {"records", "workouts", "stat_sources", "workout_humidity", "stat_meta"}) {
    EXPECT_EQ(rowsOf(database, std::string("SELECT COUNT(*) FROM ") + table, 1),
              std::vector<std::string>{"1"})
        << table;
  }
}

TEST(Migration, AddsWhatAnOlderFileLacks) {
  TestDatabase database;
  database.addRecord({})
      .run("INSERT INTO imports (imported_at, source_file) VALUES ('2020-01-01', 'export.zip')")
      .run("ALTER TABLE imports DROP COLUMN types")
      .run("DROP TABLE workout_humidity; DROP TABLE stat_types; DROP TABLE stat_sources")
      .run("DROP TABLE stat_meta; DROP INDEX ix_wo_day; DROP TABLE route_points");
  const TestDatabase fresh;

  migrate(database);

  const std::string columns = "SELECT name, type FROM pragma_table_info('imports')";
  EXPECT_EQ(rowsOf(database, columns, 2), rowsOf(fresh, columns, 2));
  const std::string names = "SELECT type, name FROM sqlite_master ORDER BY 1, 2";
  EXPECT_EQ(rowsOf(database, names, 2), rowsOf(fresh, names, 2));
  EXPECT_EQ(rowsOf(database, "SELECT source_file, types FROM imports", 2),
            std::vector<std::string>{"export.zip|"});
}

TEST(Migration, TellsColumnsApartByLetterCase) {
  TestDatabase database;
  database.run("ALTER TABLE imports RENAME COLUMN types TO Types");

  EXPECT_EQ(failureOf([&] { migrate(database); }), "SQL 失败:duplicate column name: types");
}

TEST(Migration, StopsAtTheFirstFailure) {
  TestDatabase database;
  database.run("DROP TABLE imports; CREATE VIEW imports AS SELECT 1 AS id")
      .run("DROP TABLE workout_humidity");

  EXPECT_THAT(failureOf([&] { migrate(database); }), StartsWith("SQL 失败:"));

  EXPECT_TRUE(rowsOf(database, "SELECT name FROM sqlite_master WHERE name = 'workout_humidity'", 1)
                  .empty());
}

}  // namespace
