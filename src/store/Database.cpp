#include "store/Database.h"
#include "platform/Text.h"
#include "store/Patience.h"
#include "store/RegularFiles.h"

#include <sqlite3.h>

#include <cstddef>
#include <filesystem>
#include <memory>
#include <new>
#include <system_error>
#include <utility>

namespace {

/// SQLite's message for the last error on `database`, which may be null. It can quote bytes of the
/// file.
std::string messageOf(sqlite3* database) {
  return database == nullptr ? "?" : repaired(sqlite3_errmsg(database));
}

/// The errno of the system call behind the last error on `database`; 0 when there was none.
int systemErrorOf(sqlite3* database) {
  const int result = sqlite3_errcode(database) & 0xff;
  if (result != SQLITE_IOERR && result != SQLITE_CANTOPEN) return 0;
  int number = sqlite3_system_errno(database);
  if (number != 0) return number;
  // After a failed commit only the handles of the database's and the log's file have the errno.
  sqlite3_file_control(database, "main", SQLITE_FCNTL_LAST_ERRNO, &number);
  if (number != 0) return number;
  sqlite3_file* log = nullptr;
  sqlite3_file_control(database, "main", SQLITE_FCNTL_JOURNAL_POINTER, static_cast<void*>(&log));
  if (log == nullptr || log->pMethods == nullptr) return 0;
  log->pMethods->xFileControl(log, SQLITE_FCNTL_LAST_ERRNO, &number);
  return number;
}

/// The facts about the failure of `act` on `database`, which may be null.
DatabaseError::Facts factsOf(sqlite3* database, DatabaseError::Act act) {
  return {.act = act,
          .reason = messageOf(database),
          .code = sqlite3_errcode(database) & 0xff,
          .systemError = systemErrorOf(database)};
}

}  // namespace

bool DatabaseError::isDiskFull() const { return facts.code == SQLITE_FULL; }

namespace {

/// False for a text, a blob and NULL.
bool isNumber(sqlite3_value* value) {
  const int type = sqlite3_value_type(value);
  return type == SQLITE_INTEGER || type == SQLITE_FLOAT;
}

}  // namespace

// A value is fetched once per column because the statement already holds the connection's lock.
// sqlite3_column_text and similar functions would lock again in every call, which takes longer than
// the reading itself.

template <>
std::optional<std::string_view> Row::find<std::string_view>(int index) const {
  sqlite3_value* value = sqlite3_column_value(statement, index);
  if (sqlite3_value_type(value) == SQLITE_NULL) return std::nullopt;
  // Text before length: the first of the two calls may convert the value.
  const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
  if (text == nullptr) throw std::bad_alloc();
  return std::string_view(text, static_cast<std::size_t>(sqlite3_value_bytes(value)));
}

template <>
std::optional<std::string> Row::find<std::string>(int index) const {
  const std::optional<std::string_view> stored = find<std::string_view>(index);
  if (!stored) return std::nullopt;
  return repaired(*stored);
}

template <>
std::optional<double> Row::find<double>(int index) const {
  sqlite3_value* value = sqlite3_column_value(statement, index);
  if (!isNumber(value)) return std::nullopt;
  return sqlite3_value_double(value);
}

template <>
std::optional<std::int64_t> Row::find<std::int64_t>(int index) const {
  sqlite3_value* value = sqlite3_column_value(statement, index);
  if (!isNumber(value)) return std::nullopt;
  return sqlite3_value_int64(value);
}

void Statement::Finalizer::operator()(sqlite3_stmt* statement) const {
  sqlite3_finalize(statement);
}

void Statement::Unlocker::operator()(sqlite3_mutex* mutex) const { sqlite3_mutex_leave(mutex); }

Statement::Statement(sqlite3* database, const std::string& sql, std::string stepFailure)
    : database(database), lock(sqlite3_db_mutex(database)), stepFailure(std::move(stepFailure)) {
  sqlite3_mutex_enter(lock.get());
  sqlite3_stmt* prepared = nullptr;
  const int result = sqlite3_prepare_v2(database, sql.c_str(), -1, &prepared, nullptr);
  handle.reset(prepared);
  if (result == SQLITE_OK && handle) return;
  throw DatabaseError("prepare 失败:", factsOf(database, DatabaseError::Act::work));
}

Statement& Statement::bind(int position, std::string_view text) {
  // A null pointer would bind NULL, and an empty view may contain one.
  const char* start = text.empty() ? "" : text.data();
  check(sqlite3_bind_text64(
      handle.get(), position, start, text.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
  return *this;
}

Statement& Statement::bind(int position, double number) {
  check(sqlite3_bind_double(handle.get(), position, number));
  return *this;
}

Statement& Statement::bind(int position, std::int64_t number) {
  check(sqlite3_bind_int64(handle.get(), position, number));
  return *this;
}

Statement& Statement::bindNull(int position) {
  check(sqlite3_bind_null(handle.get(), position));
  return *this;
}

std::optional<Row> Statement::next() {
  const int result = sqlite3_step(handle.get());
  if (result == SQLITE_ROW) return Row(handle.get());
  if (result != SQLITE_DONE) check(result);
  return std::nullopt;
}

void Statement::run() {
  while (next()) {
  }
  reset();
}

void Statement::reset() { check(sqlite3_reset(handle.get())); }

void Statement::check(int result) const {
  if (result == SQLITE_OK) return;
  throw DatabaseError(stepFailure, factsOf(database, DatabaseError::Act::work));
}

void Database::Closer::operator()(sqlite3* database) const { sqlite3_close(database); }

namespace {

int openFlags(Database::Options options) {
  return (options.readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE) |
         (options.create ? SQLITE_OPEN_CREATE : 0) | SQLITE_OPEN_FULLMUTEX;
}

/// SQLite treats a name that starts with "file:" as a URI with options; ours are plain paths.
std::string plainName(const std::string& path) {
  return path.starts_with("file:") ? "./" + path : path;
}

DatabaseError noFile(const std::filesystem::path& path) {
  return {"不是普通文件:", {.act = DatabaseError::Act::look, .reason = path.string()}};
}

/// Fails when `path`, or one of SQLite's files beside the database, is not a regular file. SQLite's
/// own message would not name the file. A folder at `path` is left to SQLite, which refuses it.
void requireFiles(const std::filesystem::path& path) {
  std::error_code ignored;
  // SQLite puts those files beside the target of a link, not beside the link.
  const std::filesystem::path database =
      std::filesystem::is_symlink(std::filesystem::symlink_status(path, ignored))
          ? std::filesystem::weakly_canonical(path, ignored)
          : path;
  if (std::filesystem::is_other(std::filesystem::status(database, ignored))) {
    throw noFile(path);
  }
  for (const char* ending : {"-journal", "-wal", "-shm"}) {
    std::filesystem::path beside = database;
    beside += ending;
    const std::filesystem::file_status status = std::filesystem::status(beside, ignored);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
      throw noFile(beside);
    }
  }
}

/// Forbids the content of a file to run code, to write SQLite's own tables, to load a library or to
/// use virtual table modules. False when SQLite does not accept a setting.
bool hardened(sqlite3* database) {
  return sqlite3_drop_modules(database, nullptr) == SQLITE_OK &&
         sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr) == SQLITE_OK &&
         sqlite3_db_config(database, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr) == SQLITE_OK &&
         sqlite3_db_config(database, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 0, nullptr) ==
             SQLITE_OK;
}

/// SQLite's busy handler: whether to try for the lock again after this many attempts.
int waitFor(void* patience, int attempts) {
  return static_cast<Patience*>(patience)->wait(attempts) ? 1 : 0;
}

bool waits(sqlite3* database, const Database::Options& options) {
  const int result = options.shared == nullptr
                         ? sqlite3_busy_timeout(database, options.patienceMilliseconds)
                         : sqlite3_busy_handler(database, waitFor, options.shared);
  return result == SQLITE_OK;
}

bool withoutViews(sqlite3* database) {
  return sqlite3_db_config(database, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr) == SQLITE_OK;
}

}  // namespace

/// SQLite's busy handler: whether to try for the lock again after `attempts` pauses.
int Database::Waiting::triesAgain(void* self, int attempts) {
  const auto& waiting = *static_cast<const Waiting*>(self);
  constexpr int pauseMilliseconds = 20;
  if (attempts >= waiting.patienceMilliseconds / pauseMilliseconds) return 0;
  if ((*waiting.interrupted)()) return 0;
  sqlite3_sleep(pauseMilliseconds);
  return 1;
}

int Database::Waiting::stops(void* self) {
  return (*static_cast<const Waiting*>(self)->interrupted)() ? 1 : 0;
}

/// False when SQLite does not accept the handler.
bool Database::askWhetherInterrupted(const Options& options) {
  waiting = std::make_unique<Waiting>(Waiting{options.interrupted, options.patienceMilliseconds});
  constexpr int instructions = 10000;  // at most a millisecond of work
  sqlite3_progress_handler(handle.get(), instructions, Waiting::stops, waiting.get());
  return sqlite3_busy_handler(handle.get(), Waiting::triesAgain, waiting.get()) == SQLITE_OK;
}

Database::Database(const std::string& path, Options options) {
  // If it fails, the check below is the only protection.
  [[maybe_unused]] static const bool guarded = openRegularFilesAlone();
  requireFiles(path);
  sqlite3* opened = nullptr;
  const std::string name = plainName(path);
  const int result = sqlite3_open_v2(name.c_str(), &opened, openFlags(options), nullptr);
  handle.reset(opened);
  const auto unopened = [opened] {
    return DatabaseError("打不开库:", factsOf(opened, DatabaseError::Act::open));
  };
  if (result != SQLITE_OK || !handle) throw unopened();
  if (!waits(opened, options) || !hardened(opened) || (options.readOnly && !withoutViews(opened))) {
    throw unopened();
  }
  // Otherwise SQLite would sort large results in a file, in a folder shared by all users.
  if (options.readOnly) exec("PRAGMA temp_store=MEMORY");
  if (options.interrupted != nullptr && !askWhetherInterrupted(options)) throw unopened();
}

Statement Database::prepare(const std::string& sql, std::string stepFailure) const {
  return {handle.get(), sql, std::move(stepFailure)};
}

namespace {

struct SQLiteFree {
  void operator()(char* text) const { sqlite3_free(text); }
};

}  // namespace

void Database::exec(const std::string& sql) {
  char* message = nullptr;
  const int result = sqlite3_exec(handle.get(), sql.c_str(), nullptr, nullptr, &message);
  const std::unique_ptr<char, SQLiteFree> owned(message);
  if (result == SQLITE_OK) return;
  DatabaseError::Facts facts = factsOf(handle.get(), DatabaseError::Act::work);
  facts.reason = owned ? repaired(owned.get()) : "?";
  throw DatabaseError("SQL 失败:", std::move(facts));
}
