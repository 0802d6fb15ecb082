#include "platform/ControlProtocol.h"
#include "platform/Files.h"
#include "store/HealthStore.h"
#include "support/TemporaryFolder.h"
#include "support/TestDatabase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace {

using testing::StartsWith;

constexpr HealthStore::Opening reading{};
constexpr HealthStore::Opening writing{.createIfMissing = false, .readOnly = false};
constexpr HealthStore::Opening creating{.createIfMissing = true, .readOnly = false};

/// What `act` fails with; "" when it does not.
template <typename Act>
std::string failureOf(Act act) {
  try {
    act();
  } catch (const ReceiverError& error) {
    return error.what();
  }
  return "";
}

/// The names of all that lies in `folder`.
std::set<std::string> namesIn(const std::filesystem::path& folder) {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.insert(entry.path().filename().string());
  }
  return names;
}

/// All rows of `sql`, columns joined by "|".
std::vector<std::string> rowsOf(const TestDatabase& database, const std::string& sql, int columns) {
  const Database connection = database.writer();
  Statement query = connection.prepare(sql);
  return query.readAll([columns](const Row& row) {
    std::string text = row.text(0);
    for (int index = 1; index < columns; ++index) text += "|" + row.text(index);
    return text;
  });
}

/// Every object that a database is made of, with the statement that made it.
std::vector<std::string> schemaOf(const TestDatabase& database) {
  return rowsOf(database, "SELECT type, name, sql FROM sqlite_master ORDER BY name", 3);
}

/// Opens the database as the receiver does, which brings the schema up to date.
void migrate(const TestDatabase& database) {
  const HealthStore migrated(database.path(), writing, database.log());
}

class Opening : public testing::Test {
protected:
  std::string failure(const std::filesystem::path& path, HealthStore::Opening opening) {
    return failureOf([&] { HealthStore(path.string(), opening, log); });
  }

  TemporaryFolder folder;
  Logger log{std::nullopt, Logger::Level::error, false, [] { return 0.0; }};
};

TEST_F(Opening, TellsThatTheFolderIsMissing) {
  const std::filesystem::path missing = folder / "unmounted";
  const std::string message = "数据目录不可用(盘没挂载?):" + missing.string();

  EXPECT_EQ(failure(missing / "ann.sqlite", reading), message);
  EXPECT_EQ(failure(missing / "ann.sqlite", writing), message);
  EXPECT_FALSE(std::filesystem::exists(missing));
}

TEST_F(Opening, TellsThatTheFolderIsNone) {
  const std::filesystem::path file = folder.write("file", "");
  EXPECT_EQ(failure(file / "ann.sqlite", reading), "数据目录不可用(盘没挂载?):" + file.string());
}

TEST_F(Opening, TellsThatThePathHasNoFolder) {
  EXPECT_EQ(failure("ann.sqlite", reading), "数据目录不可用(盘没挂载?):");
  EXPECT_EQ(failure("", reading), "数据目录不可用(盘没挂载?):");
}

TEST_F(Opening, TellsThatTheFileIsMissingAndCreatesNone) {
  const std::filesystem::path path = folder / "ann.sqlite";

  EXPECT_EQ(failure(path, reading), "库文件不存在:" + path.string());
  EXPECT_EQ(failure(path, writing), "库文件不存在:" + path.string());
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(Opening, TellsThatTheFileIsALinkToNowhere) {
  std::filesystem::create_symlink(folder / "nowhere", folder / "ann.sqlite");
  EXPECT_EQ(failure(folder / "ann.sqlite", reading),
            "库文件不存在:" + (folder / "ann.sqlite").string());
}

TEST_F(Opening, TakesAPipeForAMissingFile) {
  const std::string path = (folder / "ann.sqlite").string();
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);

  EXPECT_EQ(failure(path, reading), "库文件不存在:" + path);
  EXPECT_EQ(failure(path, writing), "库文件不存在:" + path);
}

TEST_F(Opening, TellsWhatTheDatabaseSays) {
  std::filesystem::create_directory(folder / "ann.sqlite");
  EXPECT_EQ(failure(folder / "ann.sqlite", reading), "打不开库:disk I/O error");
}

TEST_F(Opening, TellsThatTheWishContradictsItself) {
  EXPECT_EQ(failure(folder / "ann.sqlite", {.createIfMissing = true, .readOnly = true}),
            "打不开库:bad parameter or other API misuse");
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(Opening, CreatesFoldersAndFileWhenAsked) {
  const std::filesystem::path path = folder / "data" / "ann" / "health.sqlite";
  { const HealthStore created(path.string(), creating, log); }
  EXPECT_EQ(HealthStore(path.string(), reading, log).coverage(), SummaryCoverage());
}

TEST_F(Opening, PassesOnThatTheFolderCannotBeMade) {
  const std::filesystem::path file = folder.write("file", "");
  EXPECT_THROW(HealthStore((file / "data" / "ann.sqlite").string(), creating, log),
               std::filesystem::filesystem_error);
}

/// Makes a folder the current one for a while.
class WorkingFolder {
public:
  explicit WorkingFolder(const std::filesystem::path& folder)
      : before(std::filesystem::current_path()) {
    std::filesystem::current_path(folder);
  }
  ~WorkingFolder() { std::filesystem::current_path(before); }
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;

private:
  std::filesystem::path before;
};

TEST_F(Opening, TakesAPathThatLooksLikeAnAddressForAPath) {
  const WorkingFolder working(folder.path());
  const std::string path = "file:data/ann.sqlite?mode=memory";

  { const HealthStore created(path, creating, log); }

  EXPECT_EQ(namesIn(folder / "file:data"), std::set<std::string>{"ann.sqlite?mode=memory"});
  EXPECT_EQ(failure(path, reading), "");
}

TEST_F(Opening, LeavesAFileThatIsNoDatabaseToTheQueries) {
  const std::filesystem::path path = folder.write("ann.sqlite", std::string(8192, 'x'));
  const HealthStore store(path.string(), reading, log);

  EXPECT_EQ(failureOf([&] { store.coverage(); }), "prepare 失败:file is not a database");
  EXPECT_EQ(failureOf([&] { store.workoutStats("", ""); }), "prepare 失败:file is not a database");
}

TEST_F(Opening, DoesNotMigrateAFileThatIsNoDatabase) {
  const std::string contents(8192, 'x');
  const std::filesystem::path path = folder.write("ann.sqlite", contents);

  EXPECT_EQ(failure(path, writing), "SQL 失败:file is not a database");
  EXPECT_EQ(fileContents(path), contents);
}

TEST_F(Opening, LeavesAnEmptyFileToTheQueries) {
  const std::filesystem::path path = folder.write("ann.sqlite", "");
  const HealthStore store(path.string(), reading, log);

  EXPECT_EQ(failureOf([&] { store.presentTypes(); }), "prepare 失败:no such table: records");
  EXPECT_EQ(fileContents(path), "");
}

/// The bytes of a database file with some thousand records.
std::string fullFile(TestDatabase& database) {
  std::vector<TestRecord> records(2000);
  for (TestRecord& record : records) record.value_num = 60;
  database.addRecords(records).useRollbackJournal();
  return fileContents(database.path()).value();
}

TEST(DamagedFile, FailsTheQueriesWhenItIsCutOff) {
  TestDatabase database;
  database.replaceFile(fullFile(database).substr(0, 16384));
  EXPECT_EQ(failureOf([&] { database.open().values("HeartRate", "", "9"); }),
            "prepare 失败:database disk image is malformed");
}

TEST(DamagedFile, FailsTheQueriesThatMeetTheDamage) {
  TestDatabase database;
  std::string bytes = fullFile(database);
  std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(bytes.size() / 2), bytes.end(), '\xFF');
  database.replaceFile(bytes);
  EXPECT_EQ(failureOf([&] { database.open().values("HeartRate", "", "9"); }),
            "读取失败:database disk image is malformed");
}

struct QueryCase {
  std::string name;
  void (*run)(const HealthStore&);
  std::string table = "records";
};

class MissingTable : public testing::TestWithParam<QueryCase> {};

TEST_P(MissingTable, IsNamedByTheFailure) {
  TestDatabase database;
  database.run("DROP TABLE " + GetParam().table);
  const HealthStore store = database.open();

  EXPECT_EQ(failureOf([&] { GetParam().run(store); }),
            "prepare 失败:no such table: " + GetParam().table);
}

constexpr const char* day = "2024-03-01";

INSTANTIATE_TEST_SUITE_P(
    Queries, MissingTable,
    testing::Values(
        QueryCase{"Coverage", [](const HealthStore& store) { store.coverage(); }},
        QueryCase{"PresentTypes", [](const HealthStore& store) { store.presentTypes(); }},
        QueryCase{"YearlyCounts", [](const HealthStore& store) { store.yearlyCounts(); }},
        QueryCase{"DailyTotals",
                  [](const HealthStore& store) { store.dailyTotals("StepCount", day, day); }},
        QueryCase{"Values", [](const HealthStore& store) { store.values("HeartRate", day, day); }},
        QueryCase{"LatestValue", [](const HealthStore& store) { store.latestValue("BodyMass"); }},
        QueryCase{"SleepSegments", [](const HealthStore& store) { store.sleepSegments(day, day); }},
        QueryCase{"CumulativeSeries",
                  [](const HealthStore& store) { store.series(HealthMetric::steps, day, day); }},
        QueryCase{"MedianSeries",
                  [](const HealthStore& store) { store.series(HealthMetric::weight, day, day); }},
        QueryCase{"SleepSeries",
                  [](const HealthStore& store) { store.series(HealthMetric::sleep, day, day); }},
        QueryCase{"WorkoutStats",
                  [](const HealthStore& store) { store.workoutStats(day, day); },
                  "workouts"}),
    [](const auto& test) { return test.param.name; });

TEST(ReadOnlyStore, WritesNothingBesideARestingFile) {
  TestDatabase database;
  database.addRecord({.value_num = 60}).useRollbackJournal();
  const std::optional<std::string> before = fileContents(database.path());

  {
    const HealthStore store = database.open();
    store.coverage();
    store.series(HealthMetric::heartRate, day, day);
    EXPECT_EQ(namesIn(database.folder().path()), std::set<std::string>{"health.sqlite"});
  }

  EXPECT_EQ(fileContents(database.path()), before);
  EXPECT_EQ(namesIn(database.folder().path()), std::set<std::string>{"health.sqlite"});
}

TEST(ReadOnlyStore, DoesNotChangeAFileWithAWriteAheadLog) {
  TestDatabase database;
  database.addRecord({.value_num = 60});
  const std::optional<std::string> before = fileContents(database.path());

  database.open().coverage();

  EXPECT_EQ(fileContents(database.path()), before);
}

TEST(ReadOnlyStore, NeverMigrates) {
  TestDatabase database;
  database.run("DROP TABLE stat_sources; DROP TABLE stat_meta; DROP TABLE workout_humidity")
      .run("ALTER TABLE imports DROP COLUMN types");
  const std::vector<std::string> before = schemaOf(database);

  database.open().coverage();

  EXPECT_EQ(schemaOf(database), before);
}

TEST(ReadOnlyStore, RefusesToWrite) {
  const TestDatabase database;
  const HealthStore store = database.open();
  EXPECT_EQ(failureOf([&] { store.prepare("DELETE FROM records").run(); }),
            "读取失败:attempt to write a readonly database");
}

TEST(ReadOnlyStore, SeesTheStateOfItsFirstQuery) {
  TestDatabase database;
  database.addRecord({.type = "HeartRate"});
  const HealthStore store = database.open();
  ASSERT_EQ(store.presentTypes(), std::set<std::string>{"HeartRate"});

  database.addRecord({.type = "StepCount", .value_num = 5});

  EXPECT_EQ(store.presentTypes(), std::set<std::string>{"HeartRate"});
  EXPECT_EQ(store.coverage().records, 1);
  EXPECT_TRUE(store.series(HealthMetric::steps, day, day).empty());
  EXPECT_EQ(database.open().coverage().records, 2);
}

TEST(ReadOnlyStore, ReadsNothingBeforeItsFirstQuery) {
  TestDatabase database;
  const HealthStore store = database.open();

  database.addRecord({});

  EXPECT_EQ(store.coverage().records, 1);
}

TEST(ReadOnlyStore, LetsGoOfTheFileWithItsEnd) {
  TestDatabase database;
  database.useRollbackJournal();
  database.open().coverage();

  EXPECT_EQ(failureOf([&] { database.run("PRAGMA busy_timeout=0; BEGIN EXCLUSIVE; COMMIT"); }), "");
}

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
