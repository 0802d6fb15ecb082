#pragma once
// Opening a store in its three ways, and looking into its file from outside.

#include "store/FailureOf.h"
#include "store/HealthStore.h"
#include "support/TestDatabase.h"

#include <filesystem>
#include <set>
#include <string>
#include <vector>

inline constexpr HealthStore::Options reading{};
inline constexpr HealthStore::Options writing{.createIfMissing = false, .readOnly = false};
inline constexpr HealthStore::Options creating{.createIfMissing = true, .readOnly = false};

/// The names of all that lies in `folder`.
inline std::set<std::string> namesIn(const std::filesystem::path& folder) {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.insert(entry.path().filename().string());
  }
  return names;
}

/// All rows of `sql`, columns joined by "|".
inline std::vector<std::string> rowsOf(const TestDatabase& database, const std::string& sql,
                                       int columns) {
  const Database connection = database.writer();
  Statement query = connection.prepare(sql);
  return query.readAll([columns](const Row& row) {
    std::string text = row.text(0);
    for (int index = 1; index < columns; ++index) text += "|" + row.text(index);
    return text;
  });
}

/// Every object that a database is made of, with the statement that made it.
inline std::vector<std::string> schemaOf(const TestDatabase& database) {
  return rowsOf(database, "SELECT type, name, sql FROM sqlite_master ORDER BY name", 3);
}

/// Opens the database as the receiver does, which brings the schema up to date.
inline void migrate(const TestDatabase& database) {
  const HealthStore migrated(database.path(), writing, database.log());
}
