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

/// SQLite's message for what last failed on `database`, which may be null. It can quote the file's
/// own bytes.
std::string messageOf(sqlite3* database) {
  return database == nullptr ? "?" : repaired(sqlite3_errmsg(database));
}

/// The errno of the system call on account of which SQLite last failed on `database`; 0 when there
/// was none.
int systemErrorOf(sqlite3* database) {
  const int result = sqlite3_errcode(database) & 0xff;
  if (result != SQLITE_IOERR && result != SQLITE_CANTOPEN) return 0;
  int number = sqlite3_system_errno(database);
  if (number != 0) return number;
  // After a commit that failed, only the files know: the database's, or that of its log.
  sqlite3_file_control(database, "main", SQLITE_FCNTL_LAST_ERRNO, &number);
  if (number != 0) return number;
  sqlite3_file* log = nullptr;
  sqlite3_file_control(database, "main", SQLITE_FCNTL_JOURNAL_POINTER, static_cast<void*>(&log));
  if (log == nullptr || log->pMethods == nullptr) return 0;
  log->pMethods->xFileControl(log, SQLITE_FCNTL_LAST_ERRNO, &number);
  return number;
}

/// Why `act` just failed on `database`, which may be null.
DatabaseError::Facts factsOf(sqlite3* database, DatabaseError::Act act) {
  return {.act = act,
          .reason = messageOf(database),
          .code = sqlite3_errcode(database) & 0xff,
          .systemError = systemErrorOf(database)};
}

}  // namespace

bool DatabaseError::isDiskFull() const { return facts.code == SQLITE_FULL; }

namespace {

/// A number where there is one; a text or a blob is none.
bool isNumber(sqlite3_value* value) {
  const int type = sqlite3_value_type(value);
  return type == SQLITE_INTEGER || type == SQLITE_FLOAT;
}

}  // namespace

// Values are fetched once a column, because the statement has locked the connection already.
// sqlite3_column_text and its kin would lock it in every call, which takes longer than the reading.

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
  // A null pointer would bind NULL, and an empty view may hold one.
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

/// SQLite takes a name that begins with "file:" for an address with options; ours are plain paths.
std::string plainName(const std::string& path) {
  return path.starts_with("file:") ? "./" + path : path;
}

DatabaseError noFile(const std::filesystem::path& path) {
  return {"不是普通文件:", {.act = DatabaseError::Act::look, .reason = path.string()}};
}

/// Names what is no file where SQLite opens one: at `path` and where it looks for what it keeps
/// beside a database. It would say no more than that it cannot open one. A folder it refuses by
/// itself.
void requireFiles(const std::filesystem::path& path) {
  std::error_code ignored;
  // It looks beside the file itself, wherever a link to it lies.
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

/// What a file contains may not run code, write into SQLite's own tables, load a library or be a
/// table of a module. False when SQLite does not let itself be told.
bool hardened(sqlite3* database) {
  return sqlite3_drop_modules(database, nullptr) == SQLITE_OK &&
         sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr) == SQLITE_OK &&
         sqlite3_db_config(database, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr) == SQLITE_OK &&
         sqlite3_db_config(database, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 0, nullptr) ==
             SQLITE_OK;
}

/// Whether SQLite shall try again after so many attempts to have a lock.
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

/// Whether SQLite is to try for a lock once more, after `attempts` pauses.
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

/// False when SQLite does not let itself be told.
bool Database::askWhetherInterrupted(const Options& options) {
  waiting = std::make_unique<Waiting>(Waiting{options.interrupted, options.patienceMilliseconds});
  constexpr int instructions = 10000;  // a millisecond's at most
  sqlite3_progress_handler(handle.get(), instructions, Waiting::stops, waiting.get());
  return sqlite3_busy_handler(handle.get(), Waiting::triesAgain, waiting.get()) == SQLITE_OK;
}

Database::Database(const std::string& path, Options options) {
  // Without it, the check beforehand is all there is.
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
  // What does not fit into SQLite's cache would be sorted in a file otherwise, in a folder for all.
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
