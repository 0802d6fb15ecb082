#pragma once
// Imports into a member's database without an export file, and questions to it.

#include "import/database/Writer.h"
#include "support/TestDatabase.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

/// A complete record; tests take away what they are about.
inline ExportedRecord stepRecord() {
  return {.type = "StepCount",
          .startDate = "2024-03-01 08:00:00 +0800",
          .startDay = "2024-03-01",
          .endDate = "2024-03-01 08:10:00 +0800",
          .creationDate = "2024-03-01 08:11:00 +0800",
          .sourceName = "Ann\u2019s iPhone",
          .device = "<<HKDevice: 0x1>, name:iPhone>",
          .unit = "count",
          .value = "120",
          .number = 120.0};
}

inline ExportedWorkout eveningRun() {
  ExportedWorkout workout;
  workout.entry.activity_type = "Running";
  workout.entry.source = "Ann\u2019s Watch";
  workout.entry.start = "2024-03-02 18:00:00 +0800";
  workout.entry.end = "2024-03-02 18:30:00 +0800";
  workout.entry.duration_min = 30;
  workout.entry.distance_km = 5.5;
  workout.entry.indoor = false;
  workout.creationDate = "2024-03-02 18:31:00 +0800";
  return workout;
}

inline ExportedActivityDay rings(double energy) {
  ExportedActivityDay day;
  day.date = "2024-03-01";
  day.activeEnergy = energy;
  day.activeEnergyUnit = "kcal";
  return day;
}

/// Imports what `tell` tells into `database` and commits; what the run counted.
inline RunTally imported(const TestDatabase& database, const std::function<void(Writer&)>& tell,
                         Writer::Options options = {}) {
  Database connection(database.path(), {.create = false, .readOnly = false});
  Writer writer(connection, options);
  tell(writer);
  writer.finish({.importedAt = "2024-03-03 00:00:00 +0000",
                 .sourceFile = "export.zip",
                 .sourceBytes = 1234,
                 .timeZone = "Asia/Shanghai"});
  return writer.tally();
}

/// The rows of a query, their columns joined by "|", NULL as "-".
inline std::vector<std::string> rows(const std::string& path, const std::string& sql, int columns) {
  return Database(path, {}).prepare(sql).readAll([columns](const Row& row) {
    std::string line;
    for (int column = 0; column < columns; ++column) {
      const std::optional<std::string> text = row.find<std::string>(column);
      line += (column == 0 ? "" : "|") + text.value_or("-");
    }
    return line;
  });
}
