#pragma once
// Databases for tests: real files with the real schema.

#include "platform/Logger.h"
#include "store/Database.h"
#include "store/HealthStore.h"
#include "support/TemporaryFolder.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// One row of `records`, by column. An absent value is NULL, except for the start.
struct TestRecord {
  std::string type = "HeartRate";
  std::optional<std::string> source_name = "Watch";
  std::optional<std::string> device = std::nullopt;
  std::optional<std::string> unit = std::nullopt;
  std::optional<std::string> start_date = std::nullopt;  ///< absent: 08:00 UTC on `start_day`
  std::optional<std::string> start_day = "2024-03-01";
  std::optional<std::string> end_date = std::nullopt;
  std::optional<std::string> value = std::nullopt;
  std::optional<double> value_num = std::nullopt;
};

/// One row of `workouts`, by column. An absent value is NULL, except for the start.
struct TestWorkout {
  std::optional<std::string> activity_type = "Running";
  std::optional<double> duration_min = std::nullopt;
  std::optional<std::string> source_name = "Watch";
  std::optional<std::string> start_date = std::nullopt;  ///< absent: 08:00 UTC on `start_day`
  std::optional<std::string> start_day = "2024-03-01";
  std::optional<std::string> end_date = std::nullopt;
  std::optional<double> distance_km = std::nullopt;
  std::optional<double> active_energy_kcal = std::nullopt;
  std::optional<double> basal_energy_kcal = std::nullopt;
  std::optional<double> hr_avg = std::nullopt;
  std::optional<double> hr_min = std::nullopt;
  std::optional<double> hr_max = std::nullopt;
  std::optional<double> elevation_m = std::nullopt;
  std::optional<double> avg_mets = std::nullopt;
  std::optional<std::int64_t> indoor = std::nullopt;
  std::optional<double> temp_c = std::nullopt;
  std::optional<double> humidity_pct = std::nullopt;
};

/// One row of `stat_sources`.
struct TestSource {
  std::optional<std::string> source_name = "Watch";
  std::int64_t n = 1;
  std::optional<std::string> last = std::nullopt;
};

/// A member's database in a temporary folder, created and migrated by the store itself; the
/// destructor removes it. Between calls no connection is open, so the file is complete and not in
/// use.
class TestDatabase {
public:
  TestDatabase();

  const std::string& path() const { return file; }
  const TemporaryFolder& folder() const { return directory; }

  TestDatabase& addRecords(const std::vector<TestRecord>& records);
  TestDatabase& addRecord(const TestRecord& record) { return addRecords({record}); }
  TestDatabase& addWorkouts(const std::vector<TestWorkout>& workouts);
  TestDatabase& addWorkout(const TestWorkout& workout) { return addWorkouts({workout}); }
  TestDatabase& addSources(const std::vector<TestSource>& sources);
  TestDatabase& addHumidity(const std::string& workoutID, const std::string& data);

  /// Runs any SQL statements: to change rows, or to damage the schema.
  TestDatabase& run(const std::string& sql);

  /// Removes the write-ahead log mode from the file, as in a copy from a backup.
  TestDatabase& useRollbackJournal() { return run("PRAGMA journal_mode=DELETE"); }

  /// Replaces the file with exactly these bytes.
  TestDatabase& replaceFile(const std::string& bytes);

  /// The store with the server's options: read-only. It must not outlive this database.
  HealthStore open() const { return HealthStore(file, {}, quiet); }

  /// A writable connection.
  Database writer() const;

  /// A log that discards everything.
  Logger& log() const { return quiet; }

private:
  TemporaryFolder directory;
  std::string file;
  mutable Logger quiet;
};
