#pragma once
// What a member's database holds, for comparing.

#include "store/Database.h"

#include <filesystem>
#include <string>

/// All health data and statistics in the database at `path`, as text; the list of imports is not
/// part of it. Opens the file for writing, so that what a killed writer left is undone first. Empty
/// when there is no file or no table yet. Complains within when the file is damaged.
inline std::string databaseContents(const std::filesystem::path& path) {
  if (!std::filesystem::exists(path)) return "";
  const Database database(path.string(), {.create = false, .readOnly = false});
  std::string contents;
  const auto append = [&](const std::string& sql, int columns) {
    Statement query = database.prepare(sql);
    while (const std::optional<Row> row = query.next()) {
      for (int column = 0; column < columns; ++column) {
        contents += row->find<std::string>(column).value_or("NULL") + "|";
      }
      contents += '\n';
    }
  };
  append("SELECT integrity_check FROM pragma_integrity_check WHERE integrity_check <> 'ok'", 1);
  Statement tables = database.prepare("SELECT COUNT(*) FROM sqlite_master WHERE type = 'table'");
  constexpr std::int64_t allTables = 12;
  if (tables.next()->find<std::int64_t>(0).value_or(0) < allTables) return contents;
  append(
      "SELECT type, source_name, device, unit, start_date, start_day, end_date, creation_date,"
      " value, value_num FROM records ORDER BY type, start_date, value",
      10);
  append("SELECT activity_type, source_name, start_date, duration_min FROM workouts ORDER BY 3", 4);
  append("SELECT date, active_energy, active_energy_unit FROM activity_summary ORDER BY 1", 3);
  append("SELECT workout_id, data FROM workout_humidity ORDER BY 1", 2);
  append("SELECT type, n, last FROM stat_types ORDER BY 1", 3);
  append("SELECT source_name, n, last FROM stat_sources ORDER BY 1", 3);
  return contents;
}
