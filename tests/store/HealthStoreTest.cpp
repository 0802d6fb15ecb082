#include "platform/Files.h"
#include "store/HealthStore.h"
#include "store/StoreFiles.h"
#include "support/TemporaryFolder.h"
#include "support/TestDatabase.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace {

class Opening : public testing::Test {
protected:
  std::string failure(const std::filesystem::path& path, HealthStore::Options options) {
    return failureOf([&] { HealthStore(path.string(), options, log); });
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

/// SQLite would wait for the other end of a pipe for ever, and everybody with it.
TEST_F(Opening, TellsThatNoFileLiesWhereSQLiteKeepsOne) {
  const TestDatabase database;
  const std::string link = (folder / "link.sqlite").string();
  std::filesystem::create_symlink(database.path(), link);
  for (const char* ending : {"-journal", "-wal", "-shm"}) {
    const std::string beside = database.path() + ending;
    std::filesystem::remove(beside);
    ASSERT_EQ(mkfifo(beside.c_str(), 0600), 0);

    EXPECT_EQ(failure(database.path(), reading), "不是普通文件:" + beside);
    EXPECT_EQ(failure(link, reading), "不是普通文件:" + beside);
    EXPECT_EQ(failure(database.path(), creating), "不是普通文件:" + beside);

    std::filesystem::remove(beside);
    std::filesystem::create_directory(beside);
    EXPECT_EQ(failure(database.path(), reading), "不是普通文件:" + beside);
    std::filesystem::remove(beside);
  }
  EXPECT_EQ(failure(database.path(), reading), "");
}

TEST_F(Opening, MakesNothingOfAPipe) {
  const std::filesystem::path pipe = folder / "ann.sqlite";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);

  EXPECT_EQ(failure(pipe, reading), "库文件不存在:" + pipe.string());
  EXPECT_EQ(failure(pipe, creating), "不是普通文件:" + pipe.string());
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
        QueryCase{"RecordedDays", [](const HealthStore& store) { store.recordedDays(); }},
        QueryCase{"RecordCount", [](const HealthStore& store) { store.recordCount(); }},
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
  EXPECT_EQ(store.recordCount(), 1);
  EXPECT_TRUE(store.series(HealthMetric::steps, day, day).empty());
  EXPECT_EQ(database.open().recordCount(), 2);
}

TEST(ReadOnlyStore, ReadsNothingBeforeItsFirstQuery) {
  TestDatabase database;
  const HealthStore store = database.open();

  database.addRecord({});

  EXPECT_EQ(store.recordCount(), 1);
}

TEST(ReadOnlyStore, LetsGoOfTheFileWithItsEnd) {
  TestDatabase database;
  database.useRollbackJournal();
  database.open().coverage();

  EXPECT_EQ(failureOf([&] { database.run("PRAGMA busy_timeout=0; BEGIN EXCLUSIVE; COMMIT"); }), "");
}

}  // namespace
