#pragma once
// What a member's database holds, for comparing.

#include "store/Database.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

/// The rows that `sql` selects, `columns` wide, each with `name` before it. NULL is not "NULL".
inline std::string rowsText(const Database& database, const std::string& name,
                            const std::string& sql, int columns) {
  std::string text;
  Statement query = database.prepare(sql);
  while (const std::optional<Row> row = query.next()) {
    text += name + ": ";
    for (int column = 0; column < columns; ++column) {
      const std::optional<std::string> value = row->find<std::string>(column);
      text += value ? *value + "|" : "\\N|";
    }
    text += '\n';
  }
  return text;
}

/// Every column of every row of every table in the database at `path`, as text, but for the list of
/// imports. Opens the file for writing, so that what a killed writer left is undone first. Empty
/// when there is no file or no row. Complains within when the file is damaged.
inline std::string databaseContents(const std::filesystem::path& path) {
  if (!std::filesystem::exists(path)) return "";
  const Database database(path.string(), {.create = false, .readOnly = false});
  std::string contents =
      rowsText(database,
               "damage",
               "SELECT integrity_check FROM pragma_integrity_check WHERE integrity_check <> 'ok'",
               1);
  Statement tables = database.prepare(
      "SELECT name, (SELECT COUNT(*) FROM pragma_table_info(sqlite_master.name)) FROM sqlite_master"
      " WHERE type = 'table' AND name <> 'imports' ORDER BY name");
  while (const std::optional<Row> table = tables.next()) {
    const std::string name = table->text(0);
    const int columns = static_cast<int>(table->find<std::int64_t>(1).value_or(0));
    std::string order;
    for (int column = 1; column <= columns; ++column) {
      order += (column == 1 ? "" : ", ") + std::to_string(column);
    }
    contents += rowsText(database, name, "SELECT * FROM " + name + " ORDER BY " + order, columns);
  }
  return contents;
}
