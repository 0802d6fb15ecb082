// Opening a member's database.

#include "store/HealthStore.h"
#include "platform/ReceiverError.h"
#include "store/Schema.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace {

/// Checks that the place exists, so that an unmounted drive has another message than a missing
/// file.
void requirePlace(const std::filesystem::path& path, bool createIfMissing) {
  const std::filesystem::path directory = path.parent_path();
  std::error_code ignored;
  if (createIfMissing) {
    std::filesystem::create_directories(directory);
    return;
  }
  if (!std::filesystem::is_directory(directory, ignored)) {
    throw ReceiverError("数据目录不可用(盘没挂载?):" + directory.string());
  }
  const std::filesystem::file_status file = std::filesystem::status(path, ignored);
  if (!std::filesystem::exists(file) || std::filesystem::is_other(file)) {
    throw ReceiverError("库文件不存在:" + path.string());
  }
}

Database opened(const std::string& path, HealthStore::Options options) {
  requirePlace(path, options.createIfMissing);
  return {path,
          {.create = options.createIfMissing,
           .readOnly = options.readOnly,
           .patienceMilliseconds = options.patienceMilliseconds,
           .shared = options.sharedPatience,
           .interrupted = options.interrupted}};
}

}  // namespace

HealthStore::HealthStore(std::string path, Options options, Logger& log)
    : log(log), path(std::move(path)), db(opened(this->path, options)) {
  log.write(Logger::Level::debug, "打开库:" + this->path);
  if (options.readOnly) {
    // Deferred: reads and locks nothing until the first query, then keeps that snapshot.
    db.exec("BEGIN");
    return;
  }
  Schema::migrate(db);
}

Statement HealthStore::prepare(const std::string& sql, std::string stepFailure) const {
  std::string line = "SQL: " + sql;  // contains no values: those are bound
  std::ranges::replace(line, '\n', ' ');
  log.write(Logger::Level::debug, line);
  return db.prepare(sql, std::move(stepFailure));
}

bool HealthStore::hasTable(std::string_view name) const {
  Statement query = prepare("SELECT COUNT(*) FROM sqlite_master WHERE type='table' AND name=?");
  query.bind(1, name);
  const std::optional<Row> row = query.next();
  return row && row->find<std::int64_t>(0).value_or(0) > 0;
}
