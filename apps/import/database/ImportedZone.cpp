#include "import/database/ImportedZone.h"

#include <filesystem>

namespace {

bool hasTable(const Database& database, std::string_view name) {
  Statement query =
      database.prepare("SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = ?");
  return query.bind(1, name).next().has_value();
}

bool hasRow(const Database& database, const std::string& table) {
  return hasTable(database, table) &&
         database.prepare("SELECT 1 FROM " + table + " LIMIT 1").next().has_value();
}

std::optional<std::string> keptName(const Database& database) {
  if (!hasTable(database, "stat_meta")) return std::nullopt;
  Statement query = database.prepare("SELECT v FROM stat_meta WHERE k = 'import_time_zone'");
  const std::optional<Row> row = query.next();
  return row ? row->find<std::string>(0) : std::nullopt;
}

ImportedZone::State stateOf(const std::string& path, Database::Options options) {
  const Database database(path, options);
  return {.name = keptName(database),
          .holdsSamples = hasRow(database, "records") || hasRow(database, "workouts")};
}

}  // namespace

ImportedZone::State ImportedZone::of(const std::string& path, const Interrupted& interrupted) {
  if (!std::filesystem::exists(path)) return {};
  try {
    return stateOf(path, {.create = false, .readOnly = true, .patienceMilliseconds = 0});
  } catch (const DatabaseError&) {
    // Another process may be writing. Only a writable connection can roll back the transaction of a
    // killed writer.
    return stateOf(path, {.create = false, .readOnly = false, .interrupted = &interrupted});
  }
}

void ImportedZone::keep(Database& database, const std::string& name) {
  Statement insert =
      database.prepare("INSERT OR REPLACE INTO stat_meta (k, v) VALUES ('import_time_zone', ?)");
  insert.bind(1, name).run();
}
