#pragma once
// Writes a life into a member's database, like the receiver application.

#include "sample/Progress.h"
#include "sample/life/Sample.h"
#include "store/Database.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

/// Inserts into a writable database, in transactions of many rows. Failures throw ReceiverError.
class RecordWriter final : public RecordSink {
public:
  /// Whether the statistics tables are complete, or empty as an older receiver leaves them.
  enum class Statistics { built, missing };

  /// Begins the first transaction. `database` must be new and empty; `database` and `progress` must
  /// outlive the writer.
  RecordWriter(Database& database, Progress& progress);

  void add(const Sample& sample) override;
  void add(const Workout& workout) override;

  /// Stores the name of the zone of all stamps, where the next import looks for it.
  void noteImportZone(std::string_view name);

  /// Writes the rest. The writer must not be used afterwards.
  void finish(Statistics statistics);

  std::int64_t records() const { return recordCount; }
  std::int64_t workouts() const { return workoutCount; }

private:
  struct TypeCount {
    std::int64_t count = 0;
    std::string last;  ///< latest start, as text
  };
  using Counts = std::map<std::string, TypeCount, std::less<>>;

  static void count(Counts& counts, std::string_view key, std::string_view start);
  void run(const char* sql);
  void insertCounts(const char* sql, const Counts& counts);

  Database& database;
  Progress& progress;
  Statement insertSample;
  Statement insertWorkout;
  Statement insertHumidity;
  const char* boundType = nullptr;  ///< bound in `insertSample`: neighbours share type and source
  const Source* boundSource = nullptr;
  Counts types;
  Counts sources;
  std::int64_t recordCount = 0;
  std::int64_t workoutCount = 0;
};
