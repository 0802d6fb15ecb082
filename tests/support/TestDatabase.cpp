#include "support/TestDatabase.h"
#include "platform/Files.h"
#include "store/Schema.h"

#include <array>
#include <cstddef>
#include <filesystem>
#include <string_view>

namespace {

/// "INSERT INTO <table> (<columns>) VALUES (?, ...)".
template <std::size_t count>
std::string insertion(std::string_view table, const std::array<std::string_view, count>& columns) {
  std::string names;
  std::string marks;
  for (const std::string_view column : columns) {
    const char* separator = names.empty() ? "" : ", ";
    names.append(separator).append(column);
    marks.append(separator).append("?");
  }
  return std::string("INSERT INTO ").append(table) + " (" + names + ") VALUES (" + marks + ")";
}

/// Binds `values` from position 1 on, runs the statement and resets it.
template <typename... Values>
void insert(Statement& statement, const Values&... values) {
  int position = 0;
  (statement.bind(++position, values), ...);
  statement.run();
}

/// The start stamp of a row: its own, or else 8:00 on its day.
std::string startOf(const std::optional<std::string>& stamp,
                    const std::optional<std::string>& day) {
  return stamp ? *stamp : day.value_or("2024-03-01") + " 08:00:00 +0000";
}

/// The bytes of a newly created database.
std::string migratedFile() {
  const TemporaryFolder folder;
  const std::filesystem::path path = folder / "health.sqlite";
  {
    Database database(path.string(), {.create = true, .readOnly = false});
    Schema::migrate(database);
  }
  return fileContents(path).value();
}

}  // namespace

TestDatabase::TestDatabase()
    : file((directory / "health.sqlite").string()),
      quiet(std::nullopt, Logger::Level::error, false, [] { return 0.0; }) {
  // Created once and copied, because a migration waits for the disk several times.
  static const std::string migrated = migratedFile();
  replaceFile(migrated);
}

TestDatabase& TestDatabase::addRecords(const std::vector<TestRecord>& records) {
  constexpr std::array<std::string_view, 9> columns{"type",
                                                    "source_name",
                                                    "device",
                                                    "unit",
                                                    "start_date",
                                                    "start_day",
                                                    "end_date",
                                                    "value",
                                                    "value_num"};
  Database database = writer();
  database.exec("BEGIN");
  Statement statement = database.prepare(insertion("records", columns));
  for (const TestRecord& record : records) {
    insert(statement,
           record.type,
           record.source_name,
           record.device,
           record.unit,
           startOf(record.start_date, record.start_day),
           record.start_day,
           record.end_date,
           record.value,
           record.value_num);
  }
  database.exec("COMMIT");
  return *this;
}

TestDatabase& TestDatabase::addWorkouts(const std::vector<TestWorkout>& workouts) {
  constexpr std::array<std::string_view, 17> columns{"activity_type",
                                                     "duration_min",
                                                     "source_name",
                                                     "start_date",
                                                     "start_day",
                                                     "end_date",
                                                     "distance_km",
                                                     "active_energy_kcal",
                                                     "basal_energy_kcal",
                                                     "hr_avg",
                                                     "hr_min",
                                                     "hr_max",
                                                     "elevation_m",
                                                     "avg_mets",
                                                     "indoor",
                                                     "temp_c",
                                                     "humidity_pct"};
  Database database = writer();
  database.exec("BEGIN");
  Statement statement = database.prepare(insertion("workouts", columns));
  for (const TestWorkout& workout : workouts) {
    insert(statement,
           workout.activity_type,
           workout.duration_min,
           workout.source_name,
           startOf(workout.start_date, workout.start_day),
           workout.start_day,
           workout.end_date,
           workout.distance_km,
           workout.active_energy_kcal,
           workout.basal_energy_kcal,
           workout.hr_avg,
           workout.hr_min,
           workout.hr_max,
           workout.elevation_m,
           workout.avg_mets,
           workout.indoor,
           workout.temp_c,
           workout.humidity_pct);
  }
  database.exec("COMMIT");
  return *this;
}

TestDatabase& TestDatabase::addSources(const std::vector<TestSource>& sources) {
  constexpr std::array<std::string_view, 3> columns{"source_name", "n", "last"};
  const Database database = writer();
  Statement statement = database.prepare(insertion("stat_sources", columns));
  for (const TestSource& source : sources) {
    insert(statement, source.source_name, source.n, source.last);
  }
  return *this;
}

TestDatabase& TestDatabase::addHumidity(const std::string& workoutID, const std::string& data) {
  constexpr std::array<std::string_view, 2> columns{"workout_id", "data"};
  const Database database = writer();
  Statement statement = database.prepare(insertion("workout_humidity", columns));
  insert(statement, workoutID, data);
  return *this;
}

TestDatabase& TestDatabase::run(const std::string& sql) {
  writer().exec(sql);
  return *this;
}

TestDatabase& TestDatabase::replaceFile(const std::string& bytes) {
  std::filesystem::remove(file);
  directory.write("health.sqlite", bytes);
  return *this;
}

Database TestDatabase::writer() const {
  Database database(file, {.create = false, .readOnly = false});
  // The file exists only during one test, so there is no need to wait for the disk.
  database.exec("PRAGMA synchronous=OFF");
  return database;
}
